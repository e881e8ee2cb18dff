#include "platform/linux/brightness/level_keyboard_backlight.h"

#include <optional>
#include <string>

namespace marzipel {
namespace {

QDBusConnection busOf(const KeyboardLevelMethods& methods) {
    return methods.systemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
}

/// The integer answer of a method without arguments, or the error reply.
std::optional<int> askLevel(const KeyboardLevelMethods& methods, const char* method,
                            QDBusMessage& reply) {
    reply = dbus::call(busOf(methods), methods.at, method);
    std::optional<QVariant> value = dbus::firstResult(reply);
    if (!value) return std::nullopt;
    return value->toInt();
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
    QDBusMessage reply;
    std::optional<int> maxLevel = askLevel(methods, methods.maxLevel, reply);
    if (!maxLevel || *maxLevel <= 0) return std::nullopt;
    return maxLevel;
}

std::optional<int> LevelKeyboardBacklight::maxLevel(QDBusMessage& reply) {
    if (!maxLevel_) maxLevel_ = askLevel(methods_, methods_.maxLevel, reply);
    return maxLevel_;
}

Result<float> LevelKeyboardBacklight::brightness() {
    QDBusMessage reply;
    const std::optional<int> max = maxLevel(reply);
    const std::optional<int> level = max ? askLevel(methods_, methods_.level, reply) : std::nullopt;
    if (!level) {
        // The service may have restarted with other hardware behind it.
        maxLevel_.reset();
        return Status::failure(std::string("Could not read the keyboard backlight from ") +
                               methods_.serviceName + ": " + dbus::errorText(reply));
    }
    return fractionOfLevel(*level, *max);
}

void LevelKeyboardBacklight::readAhead() {
    // Without a known maximum, `brightness` asks for that first, which drops what was read.
    if (maxLevel_) dbus::readAhead(busOf(methods_), methods_.at, methods_.level);
}

void LevelKeyboardBacklight::setBrightness(float value) {
    QDBusMessage reply;
    if (const std::optional<int> max = maxLevel(reply)) {
        reply = dbus::call(busOf(methods_), methods_.at, methods_.setLevel,
                           {levelOfFraction(value, *max)});
        if (reply.type() == QDBusMessage::ReplyMessage) return;
    }
    maxLevel_.reset();
    log_.error(kAppLogSubsystem, kAppLogCategory,
               std::string("Could not set the keyboard backlight through ") + methods_.serviceName +
                   ": " + dbus::errorText(reply));
}

}  // namespace marzipel
