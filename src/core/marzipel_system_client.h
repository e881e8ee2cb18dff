#pragma once

#include <memory>

#include "platform/brightness_service.h"

namespace marzipel {

class SettingsManager;

/// The program's one contact with the keyboard backlight and Night Shift. A missing Night Shift
/// client is tolerated: its calls do nothing and its status reads as all zero.
class MarzipelSystemClient {
public:
    /// The built-in keyboard, the only one addressed.
    static constexpr int kKeyboardId = 1;

    /// Stops the process when `service` is null (the keyboard client could not be created).
    MarzipelSystemClient(std::unique_ptr<BrightnessService> service,
                         const SettingsManager& settings);

    /// A failed read says why.
    Result<float> keyboardBrightness();
    void setKeyboardBrightness(float value);
    void enableNightShift();
    void disableNightShift();
    BlueLightStatus nightShiftStatus();
    void setNightShiftMode(BlueLightMode mode);

private:
    void setNightShiftEnabled(bool enabled, const char* message);

    std::unique_ptr<BrightnessService> service_;
    const SettingsManager& settings_;
    bool hasBlueLightClient_;
};

/// Holds the system client used for capturing, separate from the one that acts and restores.
class MarzipelDataManager {
public:
    MarzipelDataManager(std::unique_ptr<BrightnessService> service, const SettingsManager& settings)
        : systemClient(std::move(service), settings) {}

    MarzipelSystemClient systemClient;
};

}  // namespace marzipel
