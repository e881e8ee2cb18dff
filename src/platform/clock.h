#pragma once

#include <string>

namespace marzipel {

/// Hour (0-23) and minute of the local time.
struct LocalTime {
    int hour = 0;
    int minute = 0;
};

/// The current time. Main thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual LocalTime localTime() const = 0;
    /// Now, as the user's locale writes a short date and a long time with its time zone.
    virtual std::string timestampText() const = 0;
};

}  // namespace marzipel
