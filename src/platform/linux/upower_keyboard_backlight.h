#pragma once

#include "platform/linux/keyboard_backlight.h"
#include "platform/system_log.h"

namespace marzipel {

/// UPower's keyboard backlight on the system bus, read and written as levels 0..max.
class UPowerKeyboardBacklight final : public KeyboardBacklight {
public:
    /// Whether UPower answers for a keyboard backlight right now.
    static bool available();

    explicit UPowerKeyboardBacklight(SystemLog& log) : log_(log) {}

    float brightness() override;
    void setBrightness(float value) override;

private:
    SystemLog& log_;
};

}  // namespace marzipel
