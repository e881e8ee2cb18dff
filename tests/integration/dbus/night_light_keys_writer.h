#pragma once

#include "platform/linux/night_light_schedule_keys.h"

namespace marzipel::dbustest {

/// Stores the keys as the user's Night Light settings would, in this process's GSettings
/// backend, and waits until they are written out.
void writeNightLightScheduleKeys(const NightLightScheduleKeys& keys);

}  // namespace marzipel::dbustest
