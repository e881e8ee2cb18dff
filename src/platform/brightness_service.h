#pragma once

#include <cstdint>
#include <memory>

#include "base/status.h"

namespace marzipel {

/// When the blue-light filter switches on by itself. The first three are CoreBrightness's own
/// numbers, which the macOS client takes and gives.
enum class BlueLightMode : std::int32_t {
    /// No schedule: switched on by hand.
    byHand = 0,
    sunsetToSunrise = 1,
    customSchedule = 2,
    /// A lasting setting of the desktop's, such as KWin's Constant mode.
    alwaysOn = 3,
};

/// Night Shift status as the platform reports it; zero-filled before each read.
struct BlueLightStatus {
    struct Time {
        std::int32_t hour = 0;
        std::int32_t minute = 0;
        friend bool operator==(const Time&, const Time&) = default;
    };
    bool enabled = false;
    BlueLightMode mode = BlueLightMode::byHand;
    Time from;
    Time to;
    friend bool operator==(const BlueLightStatus&, const BlueLightStatus&) = default;
};

/// What the platform calls its blue-light filter, in the words the user knows it by.
enum class BlueLightFilterName { nightShift, nightLight, nightColor, none };

/// One pair of platform clients: the keyboard backlight and the blue-light filter.
/// Main thread only. Results of the setters are not reported.
class BrightnessService {
public:
    virtual ~BrightnessService() = default;

    /// The level, from 0.0 to 1.0; a read that fails returns a failed status saying why.
    virtual Result<float> brightnessForKeyboard(int keyboardId) = 0;
    virtual void setBrightness(float value, int keyboardId) = 0;

    /// False when the blue-light client could not be created; the other blue-light calls
    /// must then not be made.
    virtual bool hasBlueLightClient() const = 0;
    virtual BlueLightStatus getBlueLightStatus() = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual void setMode(BlueLightMode mode) = 0;
};

/// Makes a new, independent pair of clients for each caller.
class BrightnessServiceFactory {
public:
    virtual ~BrightnessServiceFactory() = default;
    /// Null when the keyboard backlight client cannot be created.
    virtual std::unique_ptr<BrightnessService> create() = 0;
    /// The filter the desktop offers right now; `none` where it offers none.
    virtual BlueLightFilterName blueLightFilterName() = 0;
};

}  // namespace marzipel
