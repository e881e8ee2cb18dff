#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "settings/defaults_key.h"

namespace marzipel {

/// `initial`: deliver the current value once when observing starts. `prior`: deliver before each
/// change as well as after. Asking for both gives only `initial`.
enum class ObservationOption : unsigned { none = 0, initial = 1, prior = 2 };

constexpr ObservationOption operator|(ObservationOption a, ObservationOption b) {
    return static_cast<ObservationOption>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(ObservationOption set, ObservationOption option) {
    return (static_cast<unsigned>(set) & static_cast<unsigned>(option)) != 0;
}

/// Old and new value of one change, each decoded through the key (no value reads as default).
template <typename T>
struct KeyChange {
    T oldValue;
    T newValue;
    bool isPrior = false;
};

/// Runs `action` with this thread's update flag raised: changes it makes are not delivered to
/// observers on this thread, which is what stops observers that write each other's keys from
/// looping. Changes made on other threads meanwhile are still delivered.
void withoutPropagation(const std::function<void()>& action);

/// One observation of one key; it ends when invalidated or destroyed.
class KeyObservation : public std::enable_shared_from_this<KeyObservation> {
public:
    using Callback = std::function<void(const PreferencesChange&)>;

    KeyObservation(std::weak_ptr<PreferencesStore> store, std::string key,
                   ObservationOption options, Callback callback);
    ~KeyObservation();
    KeyObservation(const KeyObservation&) = delete;
    KeyObservation& operator=(const KeyObservation&) = delete;

    /// Registers with the store, unless the store is already gone.
    void start();
    /// Stops delivery; ending twice does nothing more.
    void invalidate();
    bool isObserving() const;

    /// Keeps this observation alive until `owner` is released, then ends it.
    void tieToLifetime(std::weak_ptr<const void> owner);

private:
    struct State;
    std::shared_ptr<State> state_;
};

/// One observation of several keys with one callback, run once per delivered change.
class CompositeKeyObservation {
public:
    using SuiteKeyPair = std::pair<std::weak_ptr<PreferencesStore>, std::string>;

    CompositeKeyObservation(std::vector<SuiteKeyPair> pairs, ObservationOption options,
                            std::function<void()> callback);
    void start();
    void invalidate();
    bool isObserving() const;

private:
    std::vector<std::shared_ptr<KeyObservation>> observations_;
};

/// Observes `key`, handing the callback typed changes. Keep the result alive as long as the
/// observation is wanted.
template <typename T>
std::shared_ptr<KeyObservation> observe(
    const Key<T>& key, ObservationOption options,
    std::type_identity_t<std::function<void(const KeyChange<T>&)>> callback) {
    auto observation = std::make_shared<KeyObservation>(
        key.sharedSuite(), key.name(), options,
        [key, callback = std::move(callback)](const PreferencesChange& change) {
            callback(KeyChange<T>{key.decode(change.oldValue), key.decode(change.newValue),
                                  change.isPrior});
        });
    observation->start();
    return observation;
}

/// Observes several keys with one callback.
template <typename... Keys>
std::unique_ptr<CompositeKeyObservation> observe(ObservationOption options,
                                                 std::function<void()> callback,
                                                 const Keys&... keys) {
    auto observation = std::make_unique<CompositeKeyObservation>(
        std::vector<CompositeKeyObservation::SuiteKeyPair>{{keys.sharedSuite(), keys.name()}...},
        options, std::move(callback));
    observation->start();
    return observation;
}

}  // namespace marzipel
