#pragma once

#include <filesystem>
#include <optional>

#include "platform/linux/brightness/keyboard_backlight.h"
#include "platform/system_log.h"

namespace marzipel {

/// A keyboard LED of the kernel (a `*kbd_backlight*` folder under /sys/class/leds), read from its
/// files and written through logind, which lets the session's own user change it without root.
class LedKeyboardBacklight final : public KeyboardBacklight {
public:
    /// The first keyboard LED in `ledsFolder` by name, if there is one.
    static std::optional<std::filesystem::path> find(const std::filesystem::path& ledsFolder);

    LedKeyboardBacklight(std::filesystem::path led, SystemLog& log)
        : led_(std::move(led)), log_(log) {}

    Result<float> brightness() override;
    void setBrightness(float value) override;

private:
    std::filesystem::path led_;
    SystemLog& log_;
};

}  // namespace marzipel
