#pragma once

#include <optional>

#include "platform/brightness_service.h"

namespace marzipel {

/// The user's Night Light settings in the GSettings schema
/// "org.gnome.settings-daemon.plugins.color". Read only: they are the user's.
struct NightLightScheduleKeys {
    bool enabled = false;
    bool automatic = false;
    /// Hours since midnight, with the minutes as the fraction.
    double from = 0;
    double to = 0;
};

/// Nothing when the schema is not installed.
std::optional<NightLightScheduleKeys> readNightLightScheduleKeys();

/// 20.5 -> 20:30, to the nearest minute, wrapped into one day.
BlueLightStatus::Time timeOfFractionalHours(double hours);

}  // namespace marzipel
