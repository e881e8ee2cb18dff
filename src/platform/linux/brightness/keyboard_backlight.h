#pragma once

#include "platform/brightness_service.h"

namespace marzipel {

/// One way of reaching the keyboard backlight, in fractions of its highest level (0.0 to 1.0).
/// Main thread only. A failed read says why; a failed write is written to the system log.
class KeyboardBacklight {
public:
    virtual ~KeyboardBacklight() = default;
    virtual Result<float> brightness() = 0;
    virtual void setBrightness(float value) = 0;
    /// Asks for the level now, for a `brightness` call that follows in this event-loop turn.
    virtual void readAhead() {}
};

/// `level` of 0..`maxLevel` as a fraction; 0.0 when there are no levels.
float fractionOfLevel(int level, int maxLevel);
/// The level nearest to `fraction`, within 0..`maxLevel`.
int levelOfFraction(float fraction, int maxLevel);

}  // namespace marzipel
