#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/night_light_schedule_keys.h"
#include "support/child_process.h"

namespace marzipel::dbustest {

/// A boolean property of gsd-color's Night Light object on the session bus; false when it
/// cannot be read.
bool colorProperty(const char* name);
/// Whether gsd-color's colour service has its name on the session bus.
bool colorServiceUp();
/// The local time of day `offset` hours from now, as fractional hours in [0, 24).
double hoursFromNow(double offset);
/// Stores the keys as the user's Night Light settings would, in this process's GSettings
/// backend, and waits until they are written out.
void writeNightLightScheduleKeys(const NightLightScheduleKeys& keys);
/// Starts gsd-color on the display that `displayVariable` names ("DISPLAY=:5" or
/// "WAYLAND_DISPLAY=name") with `home`; true once its service is up with Night Light on.
bool startColorDaemon(Child& daemon, const std::string& displayVariable,
                      const std::filesystem::path& home);

}  // namespace marzipel::dbustest
