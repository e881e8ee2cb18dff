#include "ui/models/apps_tab_model.h"

#include <algorithm>

#include "detection/running_app_items.h"
#include "diagnostics/debug_log.h"

namespace marzipel {

AppsTabModel::AppsTabModel(Services services)
    : services_(std::move(services)),
      enabledApps_(services_.settings.enabledApps()),
      appFeatures_(services_.settings.appFeatures()) {
    appsChanged_ = enabledApps_.onWillChange([this] { changed_.emit(); });
    featuresChanged_ = appFeatures_.onWillChange([this] { changed_.emit(); });
}

void AppsTabModel::sortByName(std::vector<AppItem>& items) const {
    std::ranges::stable_sort(items, [this](const AppItem& a, const AppItem& b) {
        return services_.nameOrder(a.name, b.name);
    });
}

std::vector<AppItem> AppsTabModel::triggerApps() const {
    const std::set<AppItem> stored = enabledApps_.value();
    std::vector<AppItem> items(stored.begin(), stored.end());
    sortByName(items);
    return items;
}

bool AppsTabModel::hasVideoSwitch(const AppItem& item) const {
    return !services_.catalog.isKnownVideoApp(item.id);
}

bool AppsTabModel::onlyWhenPlayingVideo(const AppItem& item) const {
    const AppFeatures features = appFeatures_.value();
    auto entry = features.find(item.id);
    return entry != features.end() && entry->second.contains(Feature::onlyWhenPlayingVideo);
}

void AppsTabModel::setOnlyWhenPlayingVideo(const AppItem& item, bool on) {
    services_.settings.setAppFeature(item.id, Feature::onlyWhenPlayingVideo, on);
}

void AppsTabModel::remove(const AppItem& item) { services_.settings.removeTriggerApp(item); }

void AppsTabModel::select(std::optional<AppItem> item) {
    selectedApp_ = std::move(item);
    changed_.emit();
}

void AppsTabModel::refresh() {
    runningApps_ = runningAppItems(services_.workspace, services_.catalog);
    sortByName(runningApps_);
    chooseDefaultEntry();
    changed_.emit();
}

void AppsTabModel::chooseDefaultEntry() {
    const std::set<AppItem> stored = enabledApps_.value();
    auto isTriggerApp = [&stored](const AppItem& item) {
        return std::ranges::any_of(stored, [&item](const AppItem& s) { return s.id == item.id; });
    };
    auto next = std::ranges::find_if_not(runningApps_, isTriggerApp);
    if (next != runningApps_.end()) selectedApp_ = *next;
}

void AppsTabModel::addSelected() {
    if (!selectedApp_) return;
    services_.settings.addTriggerApp(*selectedApp_);
    chooseDefaultEntry();
    changed_.emit();
}

void AppsTabModel::browse() { importPicked(services_.filePicker.pickApplications()); }

void AppsTabModel::importPicked(const Result<std::vector<std::string>>& picked) {
    if (!picked.ok()) {
        debugLog(services_.settings, "Failed to import app: " + picked.status().message());
        // The system's own text goes only to the log; the user sees a fixed sentence.
        alertMessage_ = "Failed to import selected app.";
        alertShown_ = true;
        changed_.emit();
        return;
    }
    for (const std::string& path : picked.value()) {
        if (!services_.filePicker.startAccessing(path)) continue;
        std::optional<AppItem> item = services_.catalog.appItem(path);
        services_.filePicker.stopAccessing(path);
        if (item) services_.settings.addTriggerApp(*item);
    }
}

void AppsTabModel::dismissAlert() {
    alertShown_ = false;
    changed_.emit();
}

}  // namespace marzipel
