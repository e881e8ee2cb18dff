#include "core/marzipel_system_client.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/float_text.h"
#include "diagnostics/debug_log.h"

namespace marzipel {

MarzipelSystemClient::MarzipelSystemClient(std::unique_ptr<BrightnessService> service,
                                           const SettingsManager& settings)
    : service_(std::move(service)), settings_(settings) {
    if (!service_) {
        std::fputs("marzipel: the keyboard backlight client could not be created\n", stderr);
        std::abort();
    }
    hasBlueLightClient_ = service_->hasBlueLightClient();
}

Result<float> MarzipelSystemClient::keyboardBrightness() {
    return service_->brightnessForKeyboard(kKeyboardId);
}

void MarzipelSystemClient::setKeyboardBrightness(float value) {
    debugLog(settings_, "Setting keyboard brightness to " + floatText(value));
    service_->setBrightness(value, kKeyboardId);
}

void MarzipelSystemClient::enableNightShift() {
    setNightShiftEnabled(true, "Enabling Night Shift");
}

void MarzipelSystemClient::disableNightShift() {
    setNightShiftEnabled(false, "Disabling Night Shift");
}

void MarzipelSystemClient::setNightShiftEnabled(bool enabled, const char* message) {
    debugLog(settings_, message);
    if (hasBlueLightClient_) service_->setEnabled(enabled);
}

BlueLightStatus MarzipelSystemClient::nightShiftStatus() {
    if (!hasBlueLightClient_) return {};
    return service_->getBlueLightStatus();
}

void MarzipelSystemClient::setNightShiftMode(BlueLightMode mode) {
    if (hasBlueLightClient_) service_->setMode(mode);
}

}  // namespace marzipel
