#include "platform/linux/brightness/gnome_power_keyboard_backlight.h"

#include <optional>
#include <string>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kKeyboard{"org.gnome.SettingsDaemon.Power", "/org/gnome/SettingsDaemon/Power",
                              "org.gnome.SettingsDaemon.Power.Keyboard"};
const dbus::Address kKeyboardProperties{kKeyboard.service, kKeyboard.path,
                                        "org.freedesktop.DBus.Properties"};
const QString kBrightness = QStringLiteral("Brightness");

/// The percentage, or the error reply; the plugin answers -1 or an error without a keyboard.
std::optional<int> readPercent(QDBusMessage& reply) {
    reply = dbus::call(QDBusConnection::sessionBus(), kKeyboardProperties, "Get",
                       {kKeyboard.interface, kBrightness});
    std::optional<QVariant> value = dbus::propertyValue(reply);
    if (!value || value->toInt() < 0) return std::nullopt;
    return value->toInt();
}

}  // namespace

bool GnomePowerKeyboardBacklight::available() {
    QDBusMessage reply;
    return readPercent(reply).has_value();
}

Result<float> GnomePowerKeyboardBacklight::brightness() {
    QDBusMessage reply;
    if (std::optional<int> percent = readPercent(reply)) {
        return fractionOfLevel(*percent, 100);
    }
    return Status::failure("Could not read the keyboard backlight from gnome-settings-daemon: " +
                           dbus::errorText(reply));
}

void GnomePowerKeyboardBacklight::readAhead() {
    dbus::readAhead(QDBusConnection::sessionBus(), kKeyboardProperties, "Get",
                    {kKeyboard.interface, kBrightness});
}

void GnomePowerKeyboardBacklight::setBrightness(float value) {
    const QDBusMessage reply = dbus::setProperty(QDBusConnection::sessionBus(), kKeyboard,
                                                 kBrightness, levelOfFraction(value, 100));
    if (reply.type() == QDBusMessage::ReplyMessage) return;
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "Could not set the keyboard backlight through gnome-settings-daemon: " +
                   dbus::errorText(reply));
}

}  // namespace marzipel
