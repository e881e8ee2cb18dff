#include "diagnostics/file_logger.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "base/utf8.h"

namespace marzipel {

namespace {
std::unique_ptr<FileLogger>& sharedSlot() {
    static std::unique_ptr<FileLogger> logger;
    return logger;
}
}  // namespace

std::string debugLogFilePath(const UserDirectories& directories) {
    auto documents = directories.documentsDirectory();
    if (!documents) {
        // A logged-in user always has one.
        std::fputs("marzipel: no Documents folder for the debug log\n", stderr);
        std::abort();
    }
    return (std::filesystem::path(*documents) / "Marzipel_debug.log").string();
}

std::unique_ptr<FileLogger> FileLogger::create(const UserDirectories& directories,
                                               const Clock& clock, Console& console) {
    std::string path = debugLogFilePath(directories);
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        if (std::FILE* created = std::fopen(path.c_str(), "ab")) std::fclose(created);
    }
    // "r+" opens for writing without truncating and without creating.
    std::FILE* file = std::fopen(path.c_str(), "r+b");
    if (!file) {
        console.printLine("Unable to open file handle: " + path + ": " + std::strerror(errno));
        return nullptr;
    }
    std::setvbuf(file, nullptr, _IONBF, 0);
    return std::unique_ptr<FileLogger>(new FileLogger(std::move(path), file, clock));
}

FileLogger::FileLogger(std::string path, std::FILE* file, const Clock& clock)
    : logFilePath_(std::move(path)), file_(file), clock_(clock) {}

FileLogger::~FileLogger() {
    if (file_) std::fclose(file_);
}

void FileLogger::log(std::string_view message) {
    if (!isValidUtf8(message)) return;
    std::string line = clock_.timestampText();
    line += ": ";
    line += message;
    line += '\n';
    std::lock_guard lock(mutex_);
    if (!file_) return;
    std::fseek(file_, 0, SEEK_END);
    std::fwrite(line.data(), 1, line.size(), file_);
}

FileLogger* FileLogger::shared() { return sharedSlot().get(); }

void FileLogger::setShared(std::unique_ptr<FileLogger> logger) { sharedSlot() = std::move(logger); }

}  // namespace marzipel
