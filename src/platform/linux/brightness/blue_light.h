#pragma once

#include <cstdint>

#include "platform/brightness_service.h"

namespace marzipel {

/// One desktop's blue-light filter behind the three blue-light calls of BrightnessService.
/// Main thread only. Failures are written to the system log; a status that cannot be read is
/// all zero.
class BlueLight {
public:
    virtual ~BlueLight() = default;
    virtual BlueLightStatus status() = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual void setMode(BlueLightMode mode) = 0;
    /// Asks for the state now, for a `status` call that follows in this event-loop turn.
    virtual void readAhead() {}
    virtual BlueLightFilterName name() const = 0;
};

}  // namespace marzipel
