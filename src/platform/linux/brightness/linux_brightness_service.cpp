#include "platform/linux/brightness/linux_brightness_service.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QStringList>
#include <optional>
#include <string>

#include "platform/linux/brightness/gnome_night_light.h"
#include "platform/linux/brightness/gnome_power_keyboard_backlight.h"
#include "platform/linux/brightness/kwin_night_color.h"
#include "platform/linux/brightness/led_keyboard_backlight.h"
#include "platform/linux/brightness/level_keyboard_backlight.h"

namespace marzipel {
namespace {

class NoKeyboardBacklight final : public KeyboardBacklight {
public:
    Result<float> brightness() override { return Status::failure("No keyboard backlight found"); }
    void setBrightness(float) override {}
};

std::unique_ptr<BlueLight> findBlueLight(SystemLog& log) {
    if (GnomeNightLight::available()) return std::make_unique<GnomeNightLight>(log);
    if (std::optional<KWinNightColor::Generation> kwin = KWinNightColor::find()) {
        return std::make_unique<KWinNightColor>(*kwin, log);
    }
    return nullptr;
}

class LinuxBrightnessService final : public BrightnessService {
public:
    LinuxBrightnessService(std::unique_ptr<KeyboardBacklight> keyboard, SystemLog& log,
                           Signal<>& readAheadRequested)
        : keyboard_(std::move(keyboard)), log_(log), blueLight_(findBlueLight(log)) {
        readAhead_ = readAheadRequested.connect([this] {
            keyboard_->readAhead();
            if (blueLight_) blueLight_->readAhead();
        });
        const QDBusConnection session = QDBusConnection::sessionBus();
        if (blueLight_ || !session.isConnected()) return;
        // Started at login, we may come up before the desktop's colour service does.
        watcher_ = std::make_unique<QDBusServiceWatcher>();
        watcher_->setConnection(session);
        watcher_->setWatchMode(QDBusServiceWatcher::WatchForRegistration);
        watcher_->setWatchedServices(
            {QStringLiteral("org.gnome.SettingsDaemon.Color"), QStringLiteral("org.kde.KWin")});
        QObject::connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered,
                         [this] { lookAgain_ = true; });
    }

    // Only the built-in keyboard exists for us, whatever its number.
    Result<float> brightnessForKeyboard(int) override { return keyboard_->brightness(); }
    void setBrightness(float value, int) override { keyboard_->setBrightness(value); }

    /// With a session bus there is a client even before the desktop's service is up: until
    /// then it reads all zero and sends nothing, as a missing client does.
    bool hasBlueLightClient() const override { return blueLight_ || watcher_; }
    BlueLightStatus getBlueLightStatus() override {
        BlueLight* blueLight = current();
        return blueLight ? blueLight->status() : BlueLightStatus{};
    }
    void setEnabled(bool enabled) override {
        if (BlueLight* blueLight = current()) blueLight->setEnabled(enabled);
    }
    void setMode(BlueLightMode mode) override {
        if (BlueLight* blueLight = current()) blueLight->setMode(mode);
    }

private:
    /// Once found, a service is kept: it rides out its own restarts, and KWin's inhibition
    /// cookie must stay with the object that took it.
    BlueLight* current() {
        if (!blueLight_ && lookAgain_) {
            lookAgain_ = false;
            blueLight_ = findBlueLight(log_);
            if (blueLight_) watcher_.reset();
        }
        return blueLight_.get();
    }

    std::unique_ptr<KeyboardBacklight> keyboard_;
    SystemLog& log_;
    std::unique_ptr<BlueLight> blueLight_;
    std::unique_ptr<QDBusServiceWatcher> watcher_;
    bool lookAgain_ = false;
    Subscription readAhead_;
};

}  // namespace

LinuxBrightnessServiceFactory::LinuxBrightnessServiceFactory(SystemLog& log,
                                                             std::filesystem::path ledsFolder)
    : log_(log),
      powerDevilMaxLevel_(LevelKeyboardBacklight::find(kPowerDevilKeyboard)),
      upowerMaxLevel_(LevelKeyboardBacklight::find(kUPowerKeyboard)),
      led_(LedKeyboardBacklight::find(ledsFolder)) {
    keyboard_ = chooseKeyboardWay({.gnomeSettingsDaemon = GnomePowerKeyboardBacklight::available(),
                                   .powerDevil = powerDevilMaxLevel_.has_value(),
                                   .upower = upowerMaxLevel_.has_value(),
                                   .led = led_.has_value()});
    std::string line;
    switch (keyboard_) {
        case KeyboardWay::gnomeSettingsDaemon:
            line = "Keyboard backlight through gnome-settings-daemon";
            break;
        case KeyboardWay::powerDevil:
            line = "Keyboard backlight through PowerDevil";
            break;
        case KeyboardWay::upower:
            line = "Keyboard backlight through UPower";
            break;
        case KeyboardWay::led:
            line = "Keyboard backlight through logind and the kernel's LED " + led_->string();
            break;
        case KeyboardWay::none:
            log_.error(kAppLogSubsystem, kAppLogCategory,
                       "No keyboard backlight: no power daemon or UPower has one and there is no "
                       "kbd_backlight LED in " +
                           ledsFolder.string() + "; the keyboard backlight is left alone");
            return;
    }
    log_.info(kAppLogSubsystem, kAppLogCategory, line);
}

BlueLightFilterName LinuxBrightnessServiceFactory::blueLightFilterName() {
    const std::unique_ptr<BlueLight> blueLight = findBlueLight(log_);
    return blueLight ? blueLight->name() : BlueLightFilterName::none;
}

std::unique_ptr<BrightnessService> LinuxBrightnessServiceFactory::create() {
    std::unique_ptr<KeyboardBacklight> keyboard;
    switch (keyboard_) {
        case KeyboardWay::gnomeSettingsDaemon:
            keyboard = std::make_unique<GnomePowerKeyboardBacklight>(log_);
            break;
        case KeyboardWay::powerDevil:
            keyboard = std::make_unique<LevelKeyboardBacklight>(kPowerDevilKeyboard,
                                                                *powerDevilMaxLevel_, log_);
            break;
        case KeyboardWay::upower:
            keyboard =
                std::make_unique<LevelKeyboardBacklight>(kUPowerKeyboard, *upowerMaxLevel_, log_);
            break;
        case KeyboardWay::led:
            keyboard = std::make_unique<LedKeyboardBacklight>(*led_, log_);
            break;
        case KeyboardWay::none:
            keyboard = std::make_unique<NoKeyboardBacklight>();
            break;
    }
    return std::make_unique<LinuxBrightnessService>(std::move(keyboard), log_, readAheadRequested_);
}

}  // namespace marzipel
