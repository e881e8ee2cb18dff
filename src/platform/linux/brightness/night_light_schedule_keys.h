#pragma once

#include <optional>

#include "platform/brightness_service.h"

typedef struct _GSettings GSettings;

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

/// Reads the keys through one GSettings object kept for the reader's lifetime, as setting one up
/// costs far more than a read; each read still gets the backend's current values. Main thread.
class NightLightScheduleReader {
public:
    NightLightScheduleReader() = default;
    ~NightLightScheduleReader();
    NightLightScheduleReader(const NightLightScheduleReader&) = delete;
    NightLightScheduleReader& operator=(const NightLightScheduleReader&) = delete;

    /// Nothing while the schema is not installed.
    std::optional<NightLightScheduleKeys> read();

private:
    GSettings* settings_ = nullptr;
};

/// 20.5 -> 20:30, to the nearest minute, wrapped into one day.
BlueLightStatus::Time timeOfFractionalHours(double hours);

}  // namespace marzipel
