#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/signal.h"
#include "detection/app_catalog.h"
#include "platform/file_picker.h"
#include "platform/workspace.h"
#include "settings/app_item.h"
#include "settings/defaults_observable.h"
#include "settings/settings_manager.h"

namespace marzipel {

/// Orders two names as the user's language does, ignoring case: true when `a` comes first.
using NameOrder = std::function<bool(const std::string& a, const std::string& b)>;

/// The Apps tab: the trigger apps, their per-app video switch, and adding apps from the file
/// system or from the running applications. The trigger apps live in the settings; the picker
/// and the alert live as long as the model. Main thread.
class AppsTabModel {
public:
    struct Services {
        const SettingsManager& settings;
        const Workspace& workspace;
        const AppCatalog& catalog;
        FilePicker& filePicker;
        NameOrder nameOrder;
    };

    /// Every service must outlive the model. The running applications are loaded by `refresh`,
    /// which the tab calls each time it is shown.
    explicit AppsTabModel(Services services);
    AppsTabModel(const AppsTabModel&) = delete;
    AppsTabModel& operator=(const AppsTabModel&) = delete;

    /// The stored trigger apps, by name.
    std::vector<AppItem> triggerApps() const;
    /// Whether a row shows the "only when playing video" switch: not for the known players.
    bool hasVideoSwitch(const AppItem& item) const;
    bool onlyWhenPlayingVideo(const AppItem& item) const;
    /// Changes this app's switch only.
    void setOnlyWhenPlayingVideo(const AppItem& item, bool on);
    void remove(const AppItem& item);

    /// The regular running applications, by name.
    const std::vector<AppItem>& runningApps() const { return runningApps_; }
    const std::optional<AppItem>& selectedApp() const { return selectedApp_; }
    void select(std::optional<AppItem> item);
    /// Reloads the running applications and moves the choice to the first that is not yet a
    /// trigger app.
    void refresh();
    /// Adds the chosen running app, then moves the choice on.
    void addSelected();

    /// Shows the file picker and imports what the user chose.
    void browse();
    /// Adds each readable chosen application that is not stored yet; unreadable or refused
    /// ones are skipped silently. A failure of the picker itself is logged and raises the
    /// alert.
    void importPicked(const Result<std::vector<std::string>>& picked);

    /// The alert "An error occurred" and its message, while raised.
    bool isAlertShown() const { return alertShown_; }
    const std::string& alertMessage() const { return alertMessage_; }
    void dismissAlert();

    /// Called after anything shown here may have changed, from here or from elsewhere.
    [[nodiscard]] Subscription onChanged(std::function<void()> listener) {
        return changed_.connect(std::move(listener));
    }

private:
    void sortByName(std::vector<AppItem>& items) const;
    void chooseDefaultEntry();

    Services services_;
    DefaultsObservable<std::set<AppItem>> enabledApps_;
    DefaultsObservable<AppFeatures> appFeatures_;
    std::vector<AppItem> runningApps_;
    std::optional<AppItem> selectedApp_;
    bool alertShown_ = false;
    std::string alertMessage_;
    Signal<> changed_;
    Subscription appsChanged_;
    Subscription featuresChanged_;
};

}  // namespace marzipel
