#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/plist_value.h"

namespace marzipel {

/// One change of a stored key. Values are what `object` answers before and after the change,
/// registered defaults included; a prior notification carries no new value.
struct PreferencesChange {
    std::string key;
    std::optional<PlistValue> oldValue;
    std::optional<PlistValue> newValue;
    bool isPrior = false;
};

/// The per-user preferences domain: a string-keyed store of property-list values with a
/// registration layer for defaults that answers reads but is never persisted.
/// All operations may be called from any thread.
class PreferencesStore {
public:
    using Observer = std::function<void(const PreferencesChange&)>;
    using ObserverId = std::uint64_t;

    virtual ~PreferencesStore() = default;

    /// The stored value, else the registered default, else nothing.
    virtual std::optional<PlistValue> object(std::string_view key) const = 0;
    virtual void setObject(std::string_view key, PlistValue value) = 0;
    virtual void removeObject(std::string_view key) = 0;
    /// Adds entries to the registration layer, replacing earlier ones of the same name.
    virtual void registerDefaults(const PlistDictionary& defaults) = 0;

    /// Calls `observer` on the writing thread for each write or removal of `key`: once before
    /// the change (isPrior) and once after. Observers may add or remove observers from inside.
    virtual ObserverId addObserver(std::string key, Observer observer) = 0;
    virtual void removeObserver(ObserverId id) = 0;
};

}  // namespace marzipel
