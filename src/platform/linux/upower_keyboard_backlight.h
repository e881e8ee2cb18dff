#pragma once

#include <QDBusMessage>
#include <optional>

#include "platform/linux/keyboard_backlight.h"
#include "platform/system_log.h"

namespace marzipel {

/// UPower's keyboard backlight on the system bus, read and written as levels 0..max. The
/// hardware's maximum is asked for once and kept until a call fails, so that switching the
/// light off costs one call.
class UPowerKeyboardBacklight final : public KeyboardBacklight {
public:
    /// UPower's maximum level when it answers for a keyboard backlight right now.
    static std::optional<int> find();

    /// Starts from `maxLevel`, as `find` gave it.
    UPowerKeyboardBacklight(int maxLevel, SystemLog& log) : log_(log), maxLevel_(maxLevel) {}

    float brightness() override;
    void setBrightness(float value) override;
    void readAhead() override;

private:
    /// The kept maximum, else UPower's answer; nothing with `reply` holding the error.
    std::optional<int> maxLevel(QDBusMessage& reply);

    SystemLog& log_;
    std::optional<int> maxLevel_;
};

}  // namespace marzipel
