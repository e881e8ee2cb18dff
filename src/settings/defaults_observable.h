#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/signal.h"
#include "settings/defaults_observation.h"

namespace marzipel {

/// The model a view binds to for one key: reads and writes go to the store, and every change
/// of the key, from anywhere, announces itself so that the view re-reads the value.
template <typename T>
class DefaultsObservable {
public:
    explicit DefaultsObservable(Key<T> key) : key_(std::move(key)) {
        observation_ = observe<T>(key_, ObservationOption::none,
                                  [this](const KeyChange<T>&) { willChange_.emit(); });
    }
    DefaultsObservable(const DefaultsObservable&) = delete;
    DefaultsObservable& operator=(const DefaultsObservable&) = delete;

    const Key<T>& key() const { return key_; }
    T value() const { return key_.get(); }
    void setValue(const T& value) { key_.set(value); }

    /// Called before the view should re-read the value.
    [[nodiscard]] Subscription onWillChange(std::function<void()> listener) {
        return willChange_.connect(std::move(listener));
    }

private:
    Key<T> key_;
    Signal<> willChange_;
    std::shared_ptr<KeyObservation> observation_;
};

/// A switch bound to a boolean key. After the user flips it the new value is stored and then the
/// optional action runs with it.
class DefaultsToggle {
public:
    DefaultsToggle(std::string label, Key<bool> key, std::function<void(bool)> onChange = nullptr)
        : label_(std::move(label)), observable_(std::move(key)), onChange_(std::move(onChange)) {}

    const std::string& label() const { return label_; }
    bool isOn() const { return observable_.value(); }
    void setOn(bool on) {
        observable_.setValue(on);
        if (onChange_) onChange_(on);
    }
    DefaultsObservable<bool>& observable() { return observable_; }

private:
    std::string label_;
    DefaultsObservable<bool> observable_;
    std::function<void(bool)> onChange_;
};

}  // namespace marzipel
