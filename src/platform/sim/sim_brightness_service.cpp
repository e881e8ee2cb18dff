#include "platform/sim/sim_brightness_service.h"

#include "base/float_text.h"

namespace marzipel {

void SimBrightnessWorld::record(std::string call) {
    calls.push_back(call);
    if (onCall) onCall(call);
}

SimBrightnessService::SimBrightnessService(SimBrightnessWorld& world, std::string client)
    : world_(world), client_(std::move(client)) {}

Result<float> SimBrightnessService::brightnessForKeyboard(int keyboardId) {
    world_.record(client_ + " brightnessForKeyboard " + std::to_string(keyboardId));
    if (world_.keyboardReadFailure) return Status::failure(*world_.keyboardReadFailure);
    return world_.keyboard;
}

void SimBrightnessService::setBrightness(float value, int keyboardId) {
    world_.record(client_ + " setBrightness " + floatText(value) + " " +
                  std::to_string(keyboardId));
    world_.keyboard = value;
}

bool SimBrightnessService::hasBlueLightClient() const { return !world_.blueLightMissing; }

BlueLightStatus SimBrightnessService::getBlueLightStatus() {
    world_.record(client_ + " getBlueLightStatus");
    return world_.status;
}

void SimBrightnessService::setEnabled(bool enabled) {
    world_.record(client_ + " setEnabled " + (enabled ? "true" : "false"));
    world_.status.enabled = enabled;
}

void SimBrightnessService::setMode(BlueLightMode mode) {
    world_.record(client_ + " setMode " + std::to_string(static_cast<std::int32_t>(mode)));
    world_.status.mode = mode;
}

std::unique_ptr<BrightnessService> SimBrightnessServiceFactory::create() {
    if (keyboardMissing) return nullptr;
    static const char* const kNames[] = {"app", "data"};
    std::string name = created_ < 2 ? kNames[created_] : "client" + std::to_string(created_ + 1);
    ++created_;
    return std::make_unique<SimBrightnessService>(world_, name);
}

}  // namespace marzipel
