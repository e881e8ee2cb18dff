#pragma once

#include "platform/clock.h"

namespace marzipel {

/// The current calendar's local time and the user's date formats. Main thread.
class MacClock final : public Clock {
public:
    LocalTime localTime() const override;
    /// The short date and the long time of NSDateFormatter.
    std::string timestampText() const override;
};

}  // namespace marzipel
