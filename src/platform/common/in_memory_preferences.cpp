#include "platform/common/in_memory_preferences.h"

#include <vector>

namespace marzipel {

InMemoryPreferences::InMemoryPreferences(PlistDictionary values) : values_(std::move(values)) {}

std::optional<PlistValue> InMemoryPreferences::object(std::string_view key) const {
    std::lock_guard lock(mutex_);
    return lookup(key);
}

std::optional<PlistValue> InMemoryPreferences::lookup(std::string_view key) const {
    if (auto it = values_.find(key); it != values_.end()) return it->second;
    if (auto it = registered_.find(key); it != registered_.end()) return it->second;
    return std::nullopt;
}

void InMemoryPreferences::setObject(std::string_view key, PlistValue value) {
    change(key, std::move(value));
}

void InMemoryPreferences::removeObject(std::string_view key) { change(key, std::nullopt); }

void InMemoryPreferences::change(std::string_view key, std::optional<PlistValue> value) {
    PreferencesChange prior{std::string(key), object(key), std::nullopt, true};
    notify(prior);
    {
        std::lock_guard lock(mutex_);
        if (value) {
            values_.insert_or_assign(std::string(key), std::move(*value));
        } else if (auto it = values_.find(key); it != values_.end()) {
            values_.erase(it);
        }
        persist(values_);
    }
    PreferencesChange after{std::string(key), std::move(prior.oldValue), object(key), false};
    notify(after);
}

void InMemoryPreferences::registerDefaults(const PlistDictionary& defaults) {
    std::lock_guard lock(mutex_);
    for (const auto& [name, value] : defaults) registered_.insert_or_assign(name, value);
}

PreferencesStore::ObserverId InMemoryPreferences::addObserver(std::string key, Observer observer) {
    std::lock_guard lock(mutex_);
    ObserverId id = nextObserverId_++;
    observers_.emplace(id,
                       std::pair{std::move(key), std::make_shared<Observer>(std::move(observer))});
    return id;
}

void InMemoryPreferences::removeObserver(ObserverId id) {
    std::lock_guard lock(mutex_);
    observers_.erase(id);
}

PlistDictionary InMemoryPreferences::storedValues() const {
    std::lock_guard lock(mutex_);
    return values_;
}

void InMemoryPreferences::persist(const PlistDictionary&) {}

void InMemoryPreferences::notify(const PreferencesChange& change) const {
    // Observers run without the lock so that they may read, write and (un)register freely.
    std::vector<std::shared_ptr<Observer>> targets;
    {
        std::lock_guard lock(mutex_);
        for (const auto& [id, entry] : observers_) {
            if (entry.first == change.key) targets.push_back(entry.second);
        }
    }
    for (const auto& observer : targets) (*observer)(change);
}

}  // namespace marzipel
