#include "ui/models/welcome_model.h"

#include "ui/models/blue_light_label.h"

namespace marzipel {

WelcomeModel::WelcomeModel(const SettingsManager& settings, LaunchAtLogin& launchAtLogin,
                           Application& application, BrightnessServiceFactory& brightness,
                           std::vector<AppItem> detectedApps)
    : settings_(settings),
      launchAtLogin_(launchAtLogin),
      application_(application),
      blueLightToggleLabel_(marzipel::blueLightToggleLabel(brightness.blueLightFilterName())),
      detectedApps_(std::move(detectedApps)) {}

std::string_view WelcomeModel::detectedAppsHeading() const {
    return hasDetectedApps() ? "We have detected a few compatible apps for you"
                             : "Unfortunately, we found no known video apps on your device.";
}

std::string_view WelcomeModel::featuresHeading() const {
    // Without a list above there is nothing for a colon to point at.
    return hasDetectedApps() ? "When one of the above apps goes fullscreen, I want to:"
                             : "When one of the apps I will select goes fullscreen, I want to";
}

void WelcomeModel::confirm() {
    commitWelcomeSelections(settings_, selectedApps_, selectedFeatures_);
    closeRequested_.emit();
}

void WelcomeModel::windowWillClose() {
    if (!launchAtLogin_.isEnabled()) launchAtLogin_.setEnabled(true);
    application_.setActivationPolicy(ActivationPolicy::accessory);
}

}  // namespace marzipel
