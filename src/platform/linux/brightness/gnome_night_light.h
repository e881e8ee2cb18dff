#pragma once

#include "platform/linux/brightness/blue_light.h"
#include "platform/linux/brightness/night_light_schedule_keys.h"
#include "platform/system_log.h"

namespace marzipel {

/// GNOME's Night Light: gnome-settings-daemon's colour service on the session bus for whether the
/// filter shows, and the user's GSettings keys for the schedule. The keys are only read; switching
/// the filter off and on goes through the service's "DisabledUntilTomorrow", which leaves the
/// user's schedule as it was.
class GnomeNightLight final : public BlueLight {
public:
    /// Whether the colour service is on the session bus.
    static bool available();

    explicit GnomeNightLight(SystemLog& log) : log_(log) {}

    BlueLightStatus status() override;
    void setEnabled(bool enabled) override;
    void setMode(BlueLightMode mode) override;
    void readAhead() override;
    BlueLightFilterName name() const override { return BlueLightFilterName::nightLight; }

private:
    void setDisabledUntilTomorrow(bool disabled);

    SystemLog& log_;
    NightLightScheduleReader scheduleKeys_;
};

}  // namespace marzipel
