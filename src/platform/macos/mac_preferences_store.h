#pragma once

#include <memory>
#include <string>

#include "platform/preferences_store.h"

namespace marzipel {

/// NSUserDefaults. Observers are key-value observers of the defaults object for the key (new,
/// old and prior values), so they run on the thread that made the change, or on the system's
/// thread for a change made by another process. Keys must not contain ".", which key-value
/// observing reads as a path. Any thread.
class MacPreferencesStore final : public PreferencesStore {
public:
    /// The running program's own domain (standardUserDefaults).
    MacPreferencesStore();
    /// The domain named `suiteName`.
    explicit MacPreferencesStore(const std::string& suiteName);
    ~MacPreferencesStore() override;
    MacPreferencesStore(const MacPreferencesStore&) = delete;
    MacPreferencesStore& operator=(const MacPreferencesStore&) = delete;

    std::optional<PlistValue> object(std::string_view key) const override;
    /// A value holding text that is not UTF-8 cannot be stored; the key is then removed.
    void setObject(std::string_view key, PlistValue value) override;
    void removeObject(std::string_view key) override;
    void registerDefaults(const PlistDictionary& defaults) override;
    ObserverId addObserver(std::string key, Observer observer) override;
    void removeObserver(ObserverId id) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marzipel
