#include "app/sim/log_tail.h"

#include <filesystem>
#include <fstream>

namespace marzipel {

LogTail::LogTail(std::string path, std::function<bool(std::string_view)> isTimestamp)
    : path_(std::move(path)), isTimestamp_(std::move(isTimestamp)) {
    std::error_code error;
    auto size = std::filesystem::file_size(path_, error);
    offset_ = error ? 0 : size;
}

std::vector<std::string> LogTail::newMessages() {
    std::vector<std::string> messages;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path_, error)) return messages;
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
        auto separator = line.find(": ");
        if (separator != std::string::npos &&
            isTimestamp_(std::string_view(line).substr(0, separator))) {
            line.erase(0, separator + 2);
        }
        messages.push_back(std::move(line));
    }
    partial_.erase(0, start);
    return messages;
}

}  // namespace marzipel
