#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/preferences_store.h"
#include "settings/defaults_collection_bridges.h"

namespace marzipel {

/// What every typed key has: its name in the store and the store it lives in.
class AnyKey {
public:
    AnyKey(std::string name, std::shared_ptr<PreferencesStore> suite, Console& console)
        : name_(std::move(name)), suite_(std::move(suite)), console_(&console) {}

    const std::string& name() const { return name_; }
    PreferencesStore& suite() const { return *suite_; }
    const std::shared_ptr<PreferencesStore>& sharedSuite() const { return suite_; }
    Console& console() const { return *console_; }

private:
    std::string name_;
    std::shared_ptr<PreferencesStore> suite_;
    Console* console_;
};

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

/// A typed preference with a default. Reads never fail: a missing or unreadable stored object
/// reads as the default and is left as it is.
template <typename T>
class Key : public AnyKey {
public:
    using Value = T;
    using Bridge = DefaultsBridge<T>;

    /// Registers the default's stored form so that other readers of the store see it too.
    Key(std::string name, T defaultValue, std::shared_ptr<PreferencesStore> suite, Console& console)
        : AnyKey(std::move(name), std::move(suite), console),
          defaultValue_([value = std::move(defaultValue)] { return value; }) {
        if constexpr (IsOptional<T>::value) {
            if (!defaultValue_()) return;
        }
        if (auto object = Bridge::serialize(defaultValue_(), this->console())) {
            this->suite().registerDefaults(PlistDictionary{{this->name(), std::move(*object)}});
        }
    }

    T defaultValue() const { return defaultValue_(); }

    /// The stored object decoded, else the default.
    T get() const {
        auto object = suite().object(name());
        if (!object) return defaultValue_();
        return decode(*object);
    }

    /// Stores the value's stored form. An absent optional, or a value that cannot be encoded,
    /// removes the stored object so that no stale value is left behind.
    void set(const T& value) const {
        auto object = Bridge::serialize(value, console());
        if (object) {
            suite().setObject(name(), std::move(*object));
        } else {
            suite().removeObject(name());
        }
    }

    /// Decodes one stored object, falling back to the default.
    T decode(const std::optional<PlistValue>& object) const {
        if (!object) return defaultValue_();
        if (auto value = Bridge::deserialize(*object)) return std::move(*value);
        return defaultValue_();
    }

private:
    std::function<T()> defaultValue_;
};

}  // namespace marzipel
