#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace marzipel {

/// Night Shift status as the platform reports it; zero-filled before each read.
struct BlueLightStatus {
    struct Time {
        std::int32_t hour = 0;
        std::int32_t minute = 0;
        friend bool operator==(const Time&, const Time&) = default;
    };
    bool enabled = false;
    /// 0 = no schedule, 1 = sunset to sunrise, 2 = custom schedule.
    std::int32_t mode = 0;
    Time from;
    Time to;
    friend bool operator==(const BlueLightStatus&, const BlueLightStatus&) = default;
};

/// The keyboard brightness as read: its level, or why it could not be read.
struct KeyboardReading {
    static KeyboardReading of(float level) { return {level, {}}; }
    static KeyboardReading failed(std::string why) { return {std::nullopt, std::move(why)}; }

    std::optional<float> level;
    /// What failed, when there is no `level`.
    std::string failure;
};

/// One pair of platform clients: the keyboard backlight and the blue-light filter.
/// Main thread only. Results of the setters are not reported.
class BrightnessService {
public:
    virtual ~BrightnessService() = default;

    /// A read that fails has no level and says why.
    virtual KeyboardReading brightnessForKeyboard(int keyboardId) = 0;
    virtual void setBrightness(float value, int keyboardId) = 0;

    /// False when the blue-light client could not be created; the other blue-light calls
    /// must then not be made.
    virtual bool hasBlueLightClient() const = 0;
    virtual BlueLightStatus getBlueLightStatus() = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual void setMode(std::int32_t mode) = 0;
};

/// Makes a new, independent pair of clients for each caller.
class BrightnessServiceFactory {
public:
    virtual ~BrightnessServiceFactory() = default;
    /// Null when the keyboard backlight client cannot be created.
    virtual std::unique_ptr<BrightnessService> create() = 0;
};

}  // namespace marzipel
