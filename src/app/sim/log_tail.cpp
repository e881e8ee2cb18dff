#include "app/sim/log_tail.h"

#include <filesystem>
#include <fstream>

namespace marzipel {

LogTail::LogTail(std::string path) : path_(std::move(path)) {
    std::error_code error;
    auto size = std::filesystem::file_size(path_, error);
    offset_ = error ? 0 : size;
}

std::vector<std::string> LogTail::newMessages() {
    std::vector<std::string> messages;
    std::ifstream in(path_, std::ios::binary);
    if (!in) return messages;
    in.seekg(static_cast<std::streamoff>(offset_));
    std::string chunk((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    offset_ += chunk.size();
    partial_ += chunk;
    std::size_t start = 0;
    for (std::size_t end; (end = partial_.find('\n', start)) != std::string::npos;
         start = end + 1) {
        std::string line = partial_.substr(start, end - start);
        // A message holding line feeds continues on lines of its own, without a timestamp.
        auto separator = line.find(": ");
        messages.push_back(separator == std::string::npos ? line : line.substr(separator + 2));
    }
    partial_.erase(0, start);
    return messages;
}

}  // namespace marzipel
