#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "settings/app_item.h"
#include "settings/defaults_key.h"
#include "settings/feature.h"
#include "settings/marzipel_data.h"

namespace marzipel {

using AppFeatures = std::map<std::string, std::set<Feature>>;

/// Every preference of the program. Each key comes into being (and registers its default) on
/// first use, once, from any thread.
class SettingsManager {
public:
    SettingsManager(std::shared_ptr<PreferencesStore> store, Console& console);

    const Key<MarzipelData>& marzipelData() const;
    const Key<AppFeatures>& appFeatures() const;
    const Key<std::set<AppItem>>& enabledApps() const;
    const Key<std::set<Feature>>& enabledFeatures() const;
    const Key<bool>& debugLoggingEnabled() const;
    const Key<bool>& welcomeScreenShown() const;

    /// Adds a trigger app unless one with the same id is stored; then nothing is written.
    void addTriggerApp(const AppItem& item) const;
    /// Removes the item equal in all fields, if there is one, and writes the set back either way.
    void removeTriggerApp(const AppItem& item) const;
    /// Switches one of the features run while active, storing the whole set at once.
    void setFeatureEnabled(Feature feature, bool on) const;
    /// Switches one feature of one app; an entry whose set becomes empty stays.
    void setAppFeature(const std::string& appId, Feature feature, bool on) const;

    PreferencesStore& store() const { return *store_; }

private:
    template <typename T>
    struct LazyKey {
        std::once_flag once;
        std::optional<Key<T>> key;
    };
    template <typename T>
    const Key<T>& lazy(LazyKey<T>& slot, const char* name, T defaultValue) const;

    std::shared_ptr<PreferencesStore> store_;
    Console& console_;
    mutable LazyKey<MarzipelData> marzipelData_;
    mutable LazyKey<AppFeatures> appFeatures_;
    mutable LazyKey<std::set<AppItem>> enabledApps_;
    mutable LazyKey<std::set<Feature>> enabledFeatures_;
    mutable LazyKey<bool> debugLoggingEnabled_;
    mutable LazyKey<bool> welcomeScreenShown_;
};

}  // namespace marzipel
