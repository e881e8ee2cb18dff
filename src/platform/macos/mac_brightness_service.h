#pragma once

#include <memory>

#include "platform/brightness_service.h"

namespace marzipel {

/// The keyboard backlight and Night Shift clients of the private CoreBrightness framework, which
/// is loaded on first use. Main thread only.
class MacBrightnessService final : public BrightnessService {
public:
    /// A new pair of clients; null when the keyboard client cannot be made. A missing Night
    /// Shift client is no obstacle: hasBlueLightClient() then answers false.
    static std::unique_ptr<MacBrightnessService> create();
    ~MacBrightnessService() override;

    Result<float> brightnessForKeyboard(int keyboardId) override;
    void setBrightness(float value, int keyboardId) override;
    bool hasBlueLightClient() const override;
    BlueLightStatus getBlueLightStatus() override;
    void setEnabled(bool enabled) override;
    void setMode(BlueLightMode mode) override;

private:
    struct Impl;
    explicit MacBrightnessService(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// Makes each caller its own MacBrightnessService.
class MacBrightnessServiceFactory final : public BrightnessServiceFactory {
public:
    std::unique_ptr<BrightnessService> create() override { return MacBrightnessService::create(); }
    BlueLightFilterName blueLightFilterName() override { return BlueLightFilterName::nightShift; }
};

}  // namespace marzipel
