#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marzipel {

/// Follows a log file from the point where it was opened: each call returns the messages of the
/// lines appended since the last call, with their timestamp and ": " removed.
class LogTail {
public:
    explicit LogTail(std::string path);
    std::vector<std::string> newMessages();

private:
    std::string path_;
    std::uintmax_t offset_ = 0;
    std::string partial_;
};

}  // namespace marzipel
