#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "base/signal.h"
#include "platform/application.h"
#include "platform/brightness_service.h"
#include "settings/app_item.h"
#include "settings/launch_at_login.h"
#include "settings/selections.h"
#include "settings/settings_manager.h"

namespace marzipel {

/// The first-run welcome: the known players found on this machine, the user's provisional
/// choice of apps and features, and what confirming and closing do. Nothing is stored until
/// the user confirms. Main thread.
class WelcomeModel {
public:
    /// `detectedApps` in the order discovery found them. The others must outlive the model.
    WelcomeModel(const SettingsManager& settings, LaunchAtLogin& launchAtLogin,
                 Application& application, BrightnessServiceFactory& brightness,
                 std::vector<AppItem> detectedApps);
    WelcomeModel(const WelcomeModel&) = delete;
    WelcomeModel& operator=(const WelcomeModel&) = delete;

    const std::vector<AppItem>& detectedApps() const { return detectedApps_; }
    bool hasDetectedApps() const { return !detectedApps_.empty(); }
    /// The line above the app list, or in its place when nothing was found.
    std::string_view detectedAppsHeading() const;
    /// The line above the two feature switches.
    std::string_view featuresHeading() const;

    /// The blue-light filter's switch, named as the platform named the filter when the model
    /// was made.
    std::string_view blueLightToggleLabel() const { return blueLightToggleLabel_; }

    /// Starts empty: every app switch off.
    SelectedApps& selectedApps() { return selectedApps_; }
    /// Starts with both features on.
    SelectedFeatures& selectedFeatures() { return selectedFeatures_; }

    /// "I'm all set!": stores the chosen apps (replacing earlier ones), the features and that
    /// the welcome was shown, then asks for the window to close.
    void confirm();
    /// The window is closing, however that came about: switches launch at login on if it is
    /// off, then leaves the Dock.
    void windowWillClose();

    /// Called when confirming wants the window closed.
    [[nodiscard]] Subscription onCloseRequested(std::function<void()> listener) {
        return closeRequested_.connect(std::move(listener));
    }

private:
    const SettingsManager& settings_;
    LaunchAtLogin& launchAtLogin_;
    Application& application_;
    std::string_view blueLightToggleLabel_;
    std::vector<AppItem> detectedApps_;
    SelectedApps selectedApps_;
    SelectedFeatures selectedFeatures_;
    Signal<> closeRequested_;
};

}  // namespace marzipel
