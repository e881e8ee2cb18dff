#pragma once

#include <gio/gio.h>

#include <optional>
#include <string>

#include "mock_service.h"
#include "platform/linux/dbus/dbus_call.h"

namespace marzipel::dbustest {

/// gsd-power's keyboard level in percent; nothing while it does not answer for one.
inline std::optional<int> powerKeyboardPercent() {
    const dbus::Address keyboard{"org.gnome.SettingsDaemon.Power",
                                 "/org/gnome/SettingsDaemon/Power",
                                 "org.gnome.SettingsDaemon.Power.Keyboard"};
    std::optional<QVariant> value =
        dbus::property(QDBusConnection::sessionBus(), keyboard, QStringLiteral("Brightness"));
    if (!value) return std::nullopt;
    return value->toInt();
}

/// The real gsd-power on an X display, with the stand-ins it needs beside UPower: logind, and
/// Mutter's display configuration and idle monitor and GNOME's session manager, for an active
/// session that goes idle when the test says so.
class GnomePowerDaemon {
public:
    /// Starts it with `displayVariable` ("DISPLAY=:5") and `home`; true once it answers for
    /// the keyboard of the UPower that runs already.
    bool start(const std::string& displayVariable, const std::string& home) {
        // Idle watches other than the dim would suspend or blank; the test only dims.
        GSettings* settings = g_settings_new("org.gnome.settings-daemon.plugins.power");
        g_settings_set_string(settings, "sleep-inactive-ac-type", "nothing");
        g_settings_sync();
        g_object_unref(settings);
        daemon_ = Child({GSD_POWER_PROGRAM}, {displayVariable, "HOME=" + home});
        return waitUntil([] { return powerKeyboardPercent().has_value(); }, 20s);
    }

    /// The user leaves the keyboard alone long enough for gsd-power to dim; waits until it has.
    bool becomeIdle() {
        const auto activeWatches = [&] { return idleMonitorCalls("AddUserActiveWatch"); };
        const std::size_t before = activeWatches();
        idleMonitorTest("BecomeIdle");
        return waitUntil([&] { return activeWatches() > before; });
    }
    /// The user touches the keyboard: gsd-power has undimmed before it next answers.
    void becomeActive() { idleMonitorTest("BecomeActive"); }

private:
    std::size_t idleMonitorCalls(const QString& method) const {
        return mutter_.calls(kCore, method).size();
    }
    void idleMonitorTest(const QString& method) {
        const QDBusMessage message = QDBusMessage::createMethodCall(
            "org.gnome.Mutter.IdleMonitor", kCore, "org.gnome.Mutter.IdleMonitor.Test", method);
        QDBusConnection::sessionBus().call(message);
    }

    inline static const QString kCore = QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core");
    MockService logind_{"logind", "org.freedesktop.login1", true};
    MockService mutter_{"mutter", "org.gnome.Mutter.IdleMonitor", false};
    MockService session_{"gnome_session_manager", "org.gnome.SessionManager", false};
    Child daemon_;
};

}  // namespace marzipel::dbustest
