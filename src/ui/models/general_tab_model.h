#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "base/signal.h"
#include "platform/brightness_service.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/updater.h"
#include "platform/user_directories.h"
#include "platform/workspace.h"
#include "settings/defaults_observable.h"
#include "settings/feature.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"

namespace marzipel {

/// Everything the General tab shows and changes. Every switch writes through to where it is
/// kept at once; nothing needs saving. Main thread.
class GeneralTabModel {
public:
    struct Services {
        const SettingsManager& settings;
        LaunchAtLogin& launchAtLogin;
        Updater& updater;
        Workspace& workspace;
        const UserDirectories& userDirectories;
        const Clock& clock;
        Console& console;
        BrightnessServiceFactory& brightness;
    };

    /// Every service must outlive the model.
    explicit GeneralTabModel(const Services& services);
    GeneralTabModel(const GeneralTabModel&) = delete;
    GeneralTabModel& operator=(const GeneralTabModel&) = delete;

    /// The blue-light filter's switch, named as the platform named the filter when the model
    /// was made.
    std::string_view blueLightToggleLabel() const { return blueLightToggleLabel_; }
    /// Whether `feature` runs while active; switching stores the whole set at once.
    bool isFeatureEnabled(Feature feature) const;
    void setFeatureEnabled(Feature feature, bool on);

    LaunchAtLoginToggle& launchAtLogin() { return launchAtLogin_; }

    /// Whether the updater row is shown at all.
    bool hasUpdater() const { return updater_.isAvailable(); }
    /// The row's own copy of the updater's setting, taken when the model was made.
    bool automaticallyChecksForUpdates() const { return automaticallyChecksForUpdates_; }
    void setAutomaticallyChecksForUpdates(bool on);
    /// "check now": a check at once, whatever the setting.
    void checkForUpdatesNow() { updater_.checkForUpdates(); }

    /// "Enable debug logging"; switching it on makes the shared logger if there is none.
    DefaultsToggle& debugLogging() { return debugLogging_; }
    /// "Logs are being saved to <path>" while debug logging is on, else "Logs will be saved to
    /// <path>".
    std::string logsLineText() const;
    /// Shows the folder holding the log file in the file manager.
    void openLogsFolder();

    /// Called after anything shown here may have changed, from here or from elsewhere.
    [[nodiscard]] Subscription onChanged(std::function<void()> listener) {
        return changed_.connect(std::move(listener));
    }

private:
    const SettingsManager& settings_;
    Updater& updater_;
    Workspace& workspace_;
    const UserDirectories& userDirectories_;
    std::string_view blueLightToggleLabel_;
    LaunchAtLoginToggle launchAtLogin_;
    DefaultsObservable<std::set<Feature>> enabledFeatures_;
    DefaultsToggle debugLogging_;
    bool automaticallyChecksForUpdates_;
    Signal<> changed_;
    Subscription featuresChanged_;
    Subscription debugLoggingChanged_;
    Subscription launchAtLoginChanged_;
};

}  // namespace marzipel
