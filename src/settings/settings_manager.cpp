#include "settings/settings_manager.h"

#include <algorithm>

namespace marzipel {

SettingsManager::SettingsManager(std::shared_ptr<PreferencesStore> store, Console& console)
    : store_(std::move(store)), console_(console) {}

template <typename T>
const Key<T>& SettingsManager::lazy(LazyKey<T>& slot, const char* name, T defaultValue) const {
    std::call_once(slot.once,
                   [&] { slot.key.emplace(name, std::move(defaultValue), store_, console_); });
    return *slot.key;
}

const Key<MarzipelData>& SettingsManager::marzipelData() const {
    return lazy(marzipelData_, "marzipelData", MarzipelData{});
}

const Key<AppFeatures>& SettingsManager::appFeatures() const {
    return lazy(appFeatures_, "appFeatures", AppFeatures{});
}

const Key<std::set<AppItem>>& SettingsManager::enabledApps() const {
    return lazy(enabledApps_, "enabledApps", std::set<AppItem>{});
}

const Key<std::set<Feature>>& SettingsManager::enabledFeatures() const {
    return lazy(enabledFeatures_, "enabledFeatures",
                std::set<Feature>{Feature::keyboardBacklight, Feature::nightShift});
}

const Key<bool>& SettingsManager::debugLoggingEnabled() const {
    return lazy(debugLoggingEnabled_, "debugLoggingEnabled", false);
}

const Key<bool>& SettingsManager::welcomeScreenShown() const {
    return lazy(welcomeScreenShown_, "welcomeScreenShown", false);
}

void SettingsManager::addTriggerApp(const AppItem& item) const {
    auto apps = enabledApps().get();
    if (std::ranges::any_of(apps, [&](const AppItem& stored) { return stored.id == item.id; })) {
        return;
    }
    apps.insert(item);
    enabledApps().set(apps);
}

void SettingsManager::removeTriggerApp(const AppItem& item) const {
    auto apps = enabledApps().get();
    apps.erase(item);
    enabledApps().set(apps);
}

void SettingsManager::setFeatureEnabled(Feature feature, bool on) const {
    auto features = enabledFeatures().get();
    if (on) {
        features.insert(feature);
    } else {
        features.erase(feature);
    }
    enabledFeatures().set(features);
}

void SettingsManager::setAppFeature(const std::string& appId, Feature feature, bool on) const {
    auto features = appFeatures().get();
    auto& set = features[appId];
    if (on) {
        set.insert(feature);
    } else {
        set.erase(feature);
    }
    appFeatures().set(features);
}

}  // namespace marzipel
