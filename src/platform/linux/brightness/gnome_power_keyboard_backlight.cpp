#include "platform/linux/brightness/gnome_power_keyboard_backlight.h"

#include <string>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kKeyboard{"org.gnome.SettingsDaemon.Power", "/org/gnome/SettingsDaemon/Power",
                              "org.gnome.SettingsDaemon.Power.Keyboard"};
const dbus::Address kKeyboardProperties{kKeyboard.service, kKeyboard.path,
                                        "org.freedesktop.DBus.Properties"};
const QString kBrightness = QStringLiteral("Brightness");

/// The percentage; the plugin answers -1 or an error without a keyboard.
Result<int> readPercent() {
    const Result<QVariant> value =
        dbus::propertyValue(dbus::call(QDBusConnection::sessionBus(), kKeyboardProperties, "Get",
                                       {kKeyboard.interface, kBrightness}));
    if (!value.ok()) return value.status();
    const int percent = value.value().toInt();
    if (percent < 0) return Status::failure("it answered " + std::to_string(percent));
    return percent;
}

}  // namespace

bool GnomePowerKeyboardBacklight::available() { return readPercent().ok(); }

Result<float> GnomePowerKeyboardBacklight::brightness() {
    const Result<int> percent = readPercent();
    if (percent.ok()) return fractionOfLevel(percent.value(), 100);
    return Status::failure("Could not read the keyboard backlight from gnome-settings-daemon: " +
                           percent.status().message());
}

void GnomePowerKeyboardBacklight::readAhead() {
    dbus::readAhead(QDBusConnection::sessionBus(), kKeyboardProperties, "Get",
                    {kKeyboard.interface, kBrightness});
}

void GnomePowerKeyboardBacklight::setBrightness(float value) {
    const Status set = dbus::setProperty(QDBusConnection::sessionBus(), kKeyboard, kBrightness,
                                         levelOfFraction(value, 100));
    if (set.ok()) return;
    log_.error(
        kAppLogSubsystem, kAppLogCategory,
        "Could not set the keyboard backlight through gnome-settings-daemon: " + set.message());
}

}  // namespace marzipel
