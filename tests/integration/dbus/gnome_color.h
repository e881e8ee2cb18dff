#pragma once

#include <gio/gio.h>

#include <QTime>
#include <cmath>
#include <filesystem>
#include <string>

#include "platform/linux/brightness/night_light_schedule_keys.h"
#include "platform/linux/dbus/dbus_call.h"
#include "support/compositor_session.h"

namespace marzipel::dbustest {

inline const QString kColor = QStringLiteral("org.gnome.SettingsDaemon.Color");

/// A boolean property of gsd-color's Night Light object on the session bus; false when it
/// cannot be read.
inline bool colorProperty(const char* name) {
    const dbus::Address color{kColor, "/org/gnome/SettingsDaemon/Color", kColor};
    return dbus::property(QDBusConnection::sessionBus(), color, name).valueOr(false).toBool();
}

/// Whether gsd-color's colour service has its name on the session bus.
inline bool colorServiceUp() { return dbus::hasOwner(QDBusConnection::sessionBus(), kColor); }

/// The local time of day `offset` hours from now, as fractional hours in [0, 24).
inline double hoursFromNow(double offset) {
    const double now = QTime::currentTime().msecsSinceStartOfDay() / 3'600'000.0;
    return std::fmod(now + offset + 24.0, 24.0);
}

/// Stores the keys as the user's Night Light settings would, in this process's GSettings
/// backend, and waits until they are written out.
inline void writeNightLightScheduleKeys(const NightLightScheduleKeys& keys) {
    GSettings* settings = g_settings_new("org.gnome.settings-daemon.plugins.color");
    g_settings_set_boolean(settings, "night-light-enabled", keys.enabled);
    g_settings_set_boolean(settings, "night-light-schedule-automatic", keys.automatic);
    g_settings_set_double(settings, "night-light-schedule-from", keys.from);
    g_settings_set_double(settings, "night-light-schedule-to", keys.to);
    g_settings_sync();
    g_object_unref(settings);
}

/// Starts gsd-color on the display that `displayVariable` names ("DISPLAY=:5" or
/// "WAYLAND_DISPLAY=name") with `home`; true once its service is up with Night Light on.
inline bool startColorDaemon(Child& daemon, const std::string& displayVariable,
                             const std::filesystem::path& home) {
    const std::filesystem::path runtime = home / "runtime";
    makeRuntimeFolder(runtime);
    // Now and then gsd-color takes its name and gives it up again at once ("lost name, so
    // exiting"), ending with status 0; only a fresh start helps. A daemon that was just stopped
    // may also still hold the name for a moment.
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (!waitUntil([] { return !colorServiceUp(); })) return false;
        daemon = Child({GSD_COLOR_PROGRAM}, {displayVariable, "HOME=" + home.string(),
                                             "XDG_RUNTIME_DIR=" + runtime.string()});
        waitUntil([&] { return !daemon.running() || colorProperty("NightLightActive"); }, 20s);
        if (daemon.running() && colorProperty("NightLightActive")) return true;
        daemon.stop();
    }
    return false;
}

}  // namespace marzipel::dbustest
