#include "platform/linux/linux_brightness_service.h"

#include <optional>

#include "platform/linux/gnome_night_light.h"
#include "platform/linux/kwin_night_color.h"
#include "platform/linux/led_keyboard_backlight.h"
#include "platform/linux/upower_keyboard_backlight.h"

namespace marzipel {
namespace {

class NoKeyboardBacklight final : public KeyboardBacklight {
public:
    float brightness() override { return 0.0f; }
    void setBrightness(float) override {}
};

class LinuxBrightnessService final : public BrightnessService {
public:
    LinuxBrightnessService(std::unique_ptr<KeyboardBacklight> keyboard,
                           std::unique_ptr<BlueLight> blueLight)
        : keyboard_(std::move(keyboard)), blueLight_(std::move(blueLight)) {}

    // Only the built-in keyboard exists for us, whatever its number.
    float brightnessForKeyboard(int) override { return keyboard_->brightness(); }
    void setBrightness(float value, int) override { keyboard_->setBrightness(value); }

    bool hasBlueLightClient() const override { return blueLight_ != nullptr; }
    BlueLightStatus getBlueLightStatus() override {
        return blueLight_ ? blueLight_->status() : BlueLightStatus{};
    }
    void setEnabled(bool enabled) override {
        if (blueLight_) blueLight_->setEnabled(enabled);
    }
    void setMode(std::int32_t mode) override {
        if (blueLight_) blueLight_->setMode(mode);
    }

private:
    std::unique_ptr<KeyboardBacklight> keyboard_;
    std::unique_ptr<BlueLight> blueLight_;
};

std::unique_ptr<BlueLight> findBlueLight(SystemLog& log) {
    if (GnomeNightLight::available()) return std::make_unique<GnomeNightLight>(log);
    if (std::optional<KWinNightColor::Generation> kwin = KWinNightColor::find()) {
        return std::make_unique<KWinNightColor>(*kwin, log);
    }
    return nullptr;
}

}  // namespace

LinuxBrightnessServiceFactory::LinuxBrightnessServiceFactory(SystemLog& log,
                                                             std::filesystem::path ledsFolder)
    : log_(log) {
    if (UPowerKeyboardBacklight::available()) {
        keyboard_ = Keyboard::upower;
    } else if (std::optional<std::filesystem::path> led = LedKeyboardBacklight::find(ledsFolder)) {
        keyboard_ = Keyboard::led;
        led_ = std::move(*led);
    } else {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "No keyboard backlight: UPower has none and there is no kbd_backlight LED "
                   "in " +
                       ledsFolder.string() +
                       "; keyboard brightness reads as 0.0 and is "
                       "not changed");
    }
}

std::unique_ptr<BrightnessService> LinuxBrightnessServiceFactory::create() {
    std::unique_ptr<KeyboardBacklight> keyboard;
    switch (keyboard_) {
        case Keyboard::upower:
            keyboard = std::make_unique<UPowerKeyboardBacklight>(log_);
            break;
        case Keyboard::led:
            keyboard = std::make_unique<LedKeyboardBacklight>(led_, log_);
            break;
        case Keyboard::none:
            keyboard = std::make_unique<NoKeyboardBacklight>();
            break;
    }
    return std::make_unique<LinuxBrightnessService>(std::move(keyboard), findBlueLight(log_));
}

}  // namespace marzipel
