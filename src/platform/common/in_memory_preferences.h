#pragma once

#include <map>
#include <memory>
#include <mutex>

#include "platform/preferences_store.h"

namespace marzipel {

/// A preferences domain held in memory: stored values over a registration layer, with change
/// observers. Stores that persist derive from it and save in `persist`.
class InMemoryPreferences : public PreferencesStore {
public:
    explicit InMemoryPreferences(PlistDictionary values = {});

    std::optional<PlistValue> object(std::string_view key) const override;
    void setObject(std::string_view key, PlistValue value) override;
    void removeObject(std::string_view key) override;
    void registerDefaults(const PlistDictionary& defaults) override;
    ObserverId addObserver(std::string key, Observer observer) override;
    void removeObserver(ObserverId id) override;

    /// The stored values only, without registered defaults.
    PlistDictionary storedValues() const;

protected:
    /// Called after every change with the stored values, under the store's lock.
    virtual void persist(const PlistDictionary& values);

private:
    void change(std::string_view key, std::optional<PlistValue> value);
    std::optional<PlistValue> lookup(std::string_view key) const;
    void notify(const PreferencesChange& change) const;

    mutable std::recursive_mutex mutex_;
    PlistDictionary values_;
    PlistDictionary registered_;
    std::map<ObserverId, std::pair<std::string, std::shared_ptr<Observer>>> observers_;
    ObserverId nextObserverId_ = 1;
};

}  // namespace marzipel
