#pragma once

#include <string_view>

namespace marzipel {

/// Where the program's own error entries are filed in the system log.
inline constexpr std::string_view kAppLogSubsystem = "com.orsavelt";
inline constexpr std::string_view kAppLogCategory = "MarzipelApp";

/// The operating system's log, written at error level. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void error(std::string_view subsystem, std::string_view category,
                       std::string_view message) = 0;
};

}  // namespace marzipel
