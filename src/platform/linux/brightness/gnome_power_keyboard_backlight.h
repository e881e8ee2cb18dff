#pragma once

#include "platform/linux/brightness/keyboard_backlight.h"
#include "platform/system_log.h"

namespace marzipel {

/// The keyboard backlight through gnome-settings-daemon's power plugin on the session bus, as a
/// percentage, so that the copy of the level it dims from and restores stays right.
class GnomePowerKeyboardBacklight final : public KeyboardBacklight {
public:
    /// Whether the plugin answers for a keyboard backlight right now.
    static bool available();

    explicit GnomePowerKeyboardBacklight(SystemLog& log) : log_(log) {}

    Result<float> brightness() override;
    void setBrightness(float value) override;
    void readAhead() override;

private:
    SystemLog& log_;
};

}  // namespace marzipel
