#pragma once

#include <optional>

#include "platform/linux/brightness/keyboard_backlight.h"
#include "platform/linux/dbus/dbus_call.h"
#include "platform/system_log.h"

namespace marzipel {

/// A service that answers for the keyboard backlight in levels 0..max, through three methods.
struct KeyboardLevelMethods {
    /// For the system log.
    const char* serviceName;
    bool systemBus;
    dbus::Address at;
    const char* maxLevel;
    const char* level;
    const char* setLevel;
};

/// UPower's keyboard backlight on the system bus.
extern const KeyboardLevelMethods kUPowerKeyboard;
/// KDE PowerDevil's keyboard brightness control on the session bus; it sets without showing
/// its on-screen display.
extern const KeyboardLevelMethods kPowerDevilKeyboard;

/// The keyboard backlight read and written as levels through one such service. The hardware's
/// maximum is asked for once and kept until a call fails, so that switching the light off costs
/// one call.
class LevelKeyboardBacklight final : public KeyboardBacklight {
public:
    /// The service's maximum level when it answers for a keyboard backlight right now.
    static std::optional<int> find(const KeyboardLevelMethods& methods);

    /// Starts from `maxLevel`, as `find` gave it.
    LevelKeyboardBacklight(const KeyboardLevelMethods& methods, int maxLevel, SystemLog& log)
        : methods_(methods), log_(log), maxLevel_(maxLevel) {}

    Result<float> brightness() override;
    void setBrightness(float value) override;
    void readAhead() override;

private:
    /// The kept maximum, else the service's answer, which is kept when it comes.
    Result<int> maxLevel();

    const KeyboardLevelMethods& methods_;
    SystemLog& log_;
    std::optional<int> maxLevel_;
};

}  // namespace marzipel
