#include "platform/linux/upower_keyboard_backlight.h"

#include <optional>
#include <string>

#include "platform/linux/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kKbdBacklight{"org.freedesktop.UPower", "/org/freedesktop/UPower/KbdBacklight",
                                  "org.freedesktop.UPower.KbdBacklight"};

/// The integer answer of a method without arguments, or the error reply.
std::optional<int> askLevel(const char* method, QDBusMessage& reply) {
    reply = dbus::call(QDBusConnection::systemBus(), kKbdBacklight, method);
    std::optional<QVariant> value = dbus::firstResult(reply);
    if (!value) return std::nullopt;
    return value->toInt();
}

}  // namespace

std::optional<int> UPowerKeyboardBacklight::find() {
    QDBusMessage reply;
    std::optional<int> maxLevel = askLevel("GetMaxBrightness", reply);
    if (!maxLevel || *maxLevel <= 0) return std::nullopt;
    return maxLevel;
}

std::optional<int> UPowerKeyboardBacklight::maxLevel(QDBusMessage& reply) {
    if (!maxLevel_) maxLevel_ = askLevel("GetMaxBrightness", reply);
    return maxLevel_;
}

float UPowerKeyboardBacklight::brightness() {
    QDBusMessage reply;
    const std::optional<int> max = maxLevel(reply);
    const std::optional<int> level = max ? askLevel("GetBrightness", reply) : std::nullopt;
    if (!level) {
        // UPower may have restarted with other hardware behind it.
        maxLevel_.reset();
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not read the keyboard backlight from UPower: " + dbus::errorText(reply));
        return 0.0f;
    }
    return fractionOfLevel(*level, *max);
}

void UPowerKeyboardBacklight::readAhead() {
    // Without a known maximum, `brightness` asks for that first, which drops what was read.
    if (maxLevel_) dbus::readAhead(QDBusConnection::systemBus(), kKbdBacklight, "GetBrightness");
}

void UPowerKeyboardBacklight::setBrightness(float value) {
    QDBusMessage reply;
    if (const std::optional<int> max = maxLevel(reply)) {
        reply = dbus::call(QDBusConnection::systemBus(), kKbdBacklight, "SetBrightness",
                           {levelOfFraction(value, *max)});
        if (reply.type() == QDBusMessage::ReplyMessage) return;
    }
    maxLevel_.reset();
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "Could not set the keyboard backlight through UPower: " + dbus::errorText(reply));
}

}  // namespace marzipel
