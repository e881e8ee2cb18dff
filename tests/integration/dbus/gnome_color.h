#pragma once

namespace marzipel::dbustest {

/// A boolean property of gsd-color's Night Light object on the session bus; false when it
/// cannot be read.
bool colorProperty(const char* name);
/// Whether gsd-color's colour service has its name on the session bus.
bool colorServiceUp();
/// The local time of day `offset` hours from now, as fractional hours in [0, 24).
double hoursFromNow(double offset);

}  // namespace marzipel::dbustest
