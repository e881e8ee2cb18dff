#include "night_light_keys_writer.h"

#include <gio/gio.h>

namespace marzipel::dbustest {

void writeNightLightScheduleKeys(const NightLightScheduleKeys& keys) {
    GSettings* settings = g_settings_new("org.gnome.settings-daemon.plugins.color");
    g_settings_set_boolean(settings, "night-light-enabled", keys.enabled);
    g_settings_set_boolean(settings, "night-light-schedule-automatic", keys.automatic);
    g_settings_set_double(settings, "night-light-schedule-from", keys.from);
    g_settings_set_double(settings, "night-light-schedule-to", keys.to);
    g_settings_sync();
    g_object_unref(settings);
}

}  // namespace marzipel::dbustest
