#include "platform/linux/brightness/night_light_schedule_keys.h"

#include <gio/gio.h>

#include <cmath>

namespace marzipel {
namespace {

constexpr const char* kSchema = "org.gnome.settings-daemon.plugins.color";

bool schemaInstalled() {
    GSettingsSchemaSource* source = g_settings_schema_source_get_default();
    if (!source) return false;
    GSettingsSchema* schema = g_settings_schema_source_lookup(source, kSchema, TRUE);
    if (!schema) return false;
    g_settings_schema_unref(schema);
    return true;
}

}  // namespace

NightLightScheduleReader::~NightLightScheduleReader() {
    if (settings_) g_object_unref(settings_);
}

std::optional<NightLightScheduleKeys> NightLightScheduleReader::read() {
    if (!settings_) {
        // g_settings_new aborts the process on a schema that is not installed.
        if (!schemaInstalled()) return std::nullopt;
        settings_ = g_settings_new(kSchema);
    }
    GSettings* settings = settings_;
    NightLightScheduleKeys keys;
    keys.enabled = g_settings_get_boolean(settings, "night-light-enabled");
    keys.automatic = g_settings_get_boolean(settings, "night-light-schedule-automatic");
    keys.from = g_settings_get_double(settings, "night-light-schedule-from");
    keys.to = g_settings_get_double(settings, "night-light-schedule-to");
    return keys;
}

BlueLightStatus::Time timeOfFractionalHours(double hours) {
    constexpr long kMinutesPerDay = 24 * 60;
    if (!std::isfinite(hours) || std::fabs(hours) > 1e6) return {};
    long minutes = std::lround(hours * 60) % kMinutesPerDay;
    if (minutes < 0) minutes += kMinutesPerDay;
    return {static_cast<std::int32_t>(minutes / 60), static_cast<std::int32_t>(minutes % 60)};
}

}  // namespace marzipel
