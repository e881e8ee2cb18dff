#pragma once

#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/console.h"
#include "platform/user_directories.h"

namespace marzipel {

/// The debug log: "Marzipel_debug.log" in the user's documents folder, one timestamped line per
/// message, only ever appended to.
class FileLogger {
public:
    /// Opens (creating if needed) the log file. When it cannot be opened, says so on `console`
    /// and returns null. Stops the process when the user has no documents folder.
    static std::unique_ptr<FileLogger> create(const UserDirectories& directories,
                                              const Clock& clock, Console& console);
    ~FileLogger();
    FileLogger(const FileLogger&) = delete;
    FileLogger& operator=(const FileLogger&) = delete;

    /// Appends "<timestamp>: <message>\n" at the end of the file, whatever others wrote there.
    void log(std::string_view message);
    const std::string& logFilePath() const { return logFilePath_; }

    /// The process-wide logger that the debug log call writes through; absent at start.
    static FileLogger* shared();
    static void setShared(std::unique_ptr<FileLogger> logger);

private:
    FileLogger(std::string path, std::FILE* file, const Clock& clock);

    std::string logFilePath_;
    std::FILE* file_;
    const Clock& clock_;
    std::mutex mutex_;
};

/// The path of the debug log file for these directories.
std::string debugLogFilePath(const UserDirectories& directories);

}  // namespace marzipel
