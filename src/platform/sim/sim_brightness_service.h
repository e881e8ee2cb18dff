#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/brightness_service.h"

namespace marzipel {

/// The simulated keyboard and Night Shift that every sim client pair reads and changes, with a
/// record of every call made to them ("<client> <operation> [args]").
struct SimBrightnessWorld {
    float keyboard = 1.0f;
    /// Set, keyboard reads fail with it.
    std::optional<std::string> keyboardReadFailure;
    BlueLightStatus status;
    bool blueLightMissing = false;
    std::vector<std::string> calls;
    std::function<void(const std::string&)> onCall;

    void record(std::string call);
};

class SimBrightnessService final : public BrightnessService {
public:
    SimBrightnessService(SimBrightnessWorld& world, std::string client);

    Result<float> brightnessForKeyboard(int keyboardId) override;
    void setBrightness(float value, int keyboardId) override;
    bool hasBlueLightClient() const override;
    BlueLightStatus getBlueLightStatus() override;
    void setEnabled(bool enabled) override;
    void setMode(BlueLightMode mode) override;

private:
    SimBrightnessWorld& world_;
    std::string client_;
};

/// Names the client pairs in the order they are made: "app", then "data", then "client3"...
/// Makes none (null) when `keyboardMissing` is set.
class SimBrightnessServiceFactory final : public BrightnessServiceFactory {
public:
    explicit SimBrightnessServiceFactory(SimBrightnessWorld& world) : world_(world) {}
    std::unique_ptr<BrightnessService> create() override;
    BlueLightFilterName blueLightFilterName() override { return filterName; }

    bool keyboardMissing = false;
    BlueLightFilterName filterName = BlueLightFilterName::nightShift;

private:
    SimBrightnessWorld& world_;
    int created_ = 0;
};

}  // namespace marzipel
