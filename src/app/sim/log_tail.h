#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace marzipel {

/// Follows a log file from the point where it was opened: each call returns the lines appended
/// since the last call, with the timestamp and ": " removed from lines that start an entry.
class LogTail {
public:
    /// `isTimestamp` tells whether text before a line's first ": " is an entry's timestamp;
    /// other lines continue a message that held line feeds and are returned whole.
    LogTail(std::string path, std::function<bool(std::string_view)> isTimestamp);
    std::vector<std::string> newMessages();

private:
    std::string path_;
    std::function<bool(std::string_view)> isTimestamp_;
    std::uintmax_t offset_ = 0;
    std::string partial_;
};

}  // namespace marzipel
