#include "platform/linux/brightness/gnome_night_light.h"

#include <optional>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kColor{"org.gnome.SettingsDaemon.Color", "/org/gnome/SettingsDaemon/Color",
                           "org.gnome.SettingsDaemon.Color"};

}  // namespace

bool GnomeNightLight::available() {
    return dbus::hasOwner(QDBusConnection::sessionBus(), kColor.service);
}

BlueLightStatus GnomeNightLight::status() {
    BlueLightStatus status;
    // "NightLightActive" stays true while the schedule says on, even after the user (or we)
    // switched the filter off for the night: only "DisabledUntilTomorrow" tells that it is off.
    const Result<QVariantMap> properties =
        dbus::allProperties(QDBusConnection::sessionBus(), kColor);
    if (properties.ok()) {
        status.enabled = properties.value().value("NightLightActive").toBool() &&
                         !properties.value().value("DisabledUntilTomorrow").toBool();
    } else {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not read the Night Light state from gnome-settings-daemon: " +
                       properties.status().message());
    }
    std::optional<NightLightScheduleKeys> keys = scheduleKeys_.read();
    if (!keys || !keys->enabled) return status;
    if (keys->automatic) {
        status.mode = BlueLightMode::sunsetToSunrise;
    } else {
        status.mode = BlueLightMode::customSchedule;
        status.from = timeOfFractionalHours(keys->from);
        status.to = timeOfFractionalHours(keys->to);
    }
    return status;
}

void GnomeNightLight::readAhead() {
    dbus::readAheadAllProperties(QDBusConnection::sessionBus(), kColor);
}

void GnomeNightLight::setEnabled(bool enabled) { setDisabledUntilTomorrow(!enabled); }

void GnomeNightLight::setMode(BlueLightMode mode) {
    // The schedule itself is the user's and stays untouched. Choosing a schedule means letting it
    // decide again, which is what lifting our "off for tonight" does; "no schedule" changes
    // nothing that shows.
    if (mode != BlueLightMode::byHand) setDisabledUntilTomorrow(false);
}

void GnomeNightLight::setDisabledUntilTomorrow(bool disabled) {
    const Status set =
        dbus::setProperty(QDBusConnection::sessionBus(), kColor, "DisabledUntilTomorrow", disabled);
    if (!set.ok()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not switch Night Light through gnome-settings-daemon: " + set.message());
    }
}

}  // namespace marzipel
