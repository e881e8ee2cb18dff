#include "platform/linux/brightness/level_keyboard_backlight.h"

#include <optional>
#include <string>

namespace marzipel {
namespace {

QDBusConnection busOf(const KeyboardLevelMethods& methods) {
    return methods.systemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
}

/// The integer answer of a method without arguments.
Result<int> askLevel(const KeyboardLevelMethods& methods, const char* method) {
    const Result<QVariant> value =
        dbus::firstResult(dbus::call(busOf(methods), methods.at, method));
    if (!value.ok()) return value.status();
    return value.value().toInt();
}

}  // namespace

const KeyboardLevelMethods kUPowerKeyboard{
    "UPower",
    true,
    {"org.freedesktop.UPower", "/org/freedesktop/UPower/KbdBacklight",
     "org.freedesktop.UPower.KbdBacklight"},
    "GetMaxBrightness",
    "GetBrightness",
    "SetBrightness"};

const KeyboardLevelMethods kPowerDevilKeyboard{
    "PowerDevil",
    false,
    {"org.kde.Solid.PowerManagement",
     "/org/kde/Solid/PowerManagement/Actions/KeyboardBrightnessControl",
     "org.kde.Solid.PowerManagement.Actions.KeyboardBrightnessControl"},
    "keyboardBrightnessMax",
    "keyboardBrightness",
    "setKeyboardBrightnessSilent"};

std::optional<int> LevelKeyboardBacklight::find(const KeyboardLevelMethods& methods) {
    const Result<int> maxLevel = askLevel(methods, methods.maxLevel);
    if (!maxLevel.ok() || maxLevel.value() <= 0) return std::nullopt;
    return maxLevel.value();
}

Result<int> LevelKeyboardBacklight::maxLevel() {
    if (maxLevel_) return *maxLevel_;
    Result<int> asked = askLevel(methods_, methods_.maxLevel);
    if (asked.ok()) maxLevel_ = asked.value();
    return asked;
}

Result<float> LevelKeyboardBacklight::brightness() {
    const Result<int> max = maxLevel();
    const Result<int> level = max.ok() ? askLevel(methods_, methods_.level) : max;
    if (!level.ok()) {
        // The service may have restarted with other hardware behind it.
        maxLevel_.reset();
        return Status::failure(std::string("Could not read the keyboard backlight from ") +
                               methods_.serviceName + ": " + level.status().message());
    }
    return fractionOfLevel(level.value(), max.value());
}

void LevelKeyboardBacklight::readAhead() {
    // Without a known maximum, `brightness` asks for that first, which drops what was read.
    if (maxLevel_) dbus::readAhead(busOf(methods_), methods_.at, methods_.level);
}

void LevelKeyboardBacklight::setBrightness(float value) {
    const Result<int> max = maxLevel();
    std::string failure = max.status().message();
    if (max.ok()) {
        const QDBusMessage reply = dbus::call(busOf(methods_), methods_.at, methods_.setLevel,
                                              {levelOfFraction(value, max.value())});
        if (reply.type() == QDBusMessage::ReplyMessage) return;
        failure = dbus::errorText(reply);
    }
    maxLevel_.reset();
    log_.error(kAppLogSubsystem, kAppLogCategory,
               std::string("Could not set the keyboard backlight through ") + methods_.serviceName +
                   ": " + failure);
}

}  // namespace marzipel
