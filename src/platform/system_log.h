#pragma once

#include <string_view>

namespace marzipel {

/// Where the program's own error entries are filed in the system log.
inline constexpr std::string_view kAppLogSubsystem = "com.orsavelt";
inline constexpr std::string_view kAppLogCategory = "MarzipelApp";

/// The operating system's log. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    /// Something failed or cannot work, which the user may want to know of.
    virtual void error(std::string_view subsystem, std::string_view category,
                       std::string_view message) = 0;
    /// A routine line: which way the program took, what it found.
    virtual void info(std::string_view subsystem, std::string_view category,
                      std::string_view message) = 0;
};

}  // namespace marzipel
