#pragma once

#include <string_view>

namespace marzipel {

/// The operating system's log, written at error level. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void error(std::string_view subsystem, std::string_view category,
                       std::string_view message) = 0;
};

}  // namespace marzipel
