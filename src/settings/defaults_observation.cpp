#include "settings/defaults_observation.h"

namespace marzipel {

namespace {
thread_local bool threadUpdatingValues = false;
}

void withoutPropagation(const std::function<void()>& action) {
    threadUpdatingValues = true;
    try {
        action();
    } catch (...) {
        threadUpdatingValues = false;
        throw;
    }
    threadUpdatingValues = false;
}

// Shared with the store's observer closure, so a delivery already under way when the
// observation ends finds `observing` cleared instead of a dangling object.
struct KeyObservation::State {
    std::weak_ptr<PreferencesStore> store;
    std::string key;
    ObservationOption options;
    Callback callback;
    bool observing = false;
    PreferencesStore::ObserverId observerId = 0;
    std::weak_ptr<const void> owner;
    std::shared_ptr<KeyObservation> selfWhileOwned;
};

KeyObservation::KeyObservation(std::weak_ptr<PreferencesStore> store, std::string key,
                               ObservationOption options, Callback callback)
    : state_(std::make_shared<State>()) {
    state_->store = std::move(store);
    state_->key = std::move(key);
    state_->options = options;
    state_->callback = std::move(callback);
}

KeyObservation::~KeyObservation() { invalidate(); }

void KeyObservation::start() {
    auto store = state_->store.lock();
    if (!store || state_->observing) return;
    const bool initial = contains(state_->options, ObservationOption::initial);
    const bool prior = !initial && contains(state_->options, ObservationOption::prior);
    std::weak_ptr<State> weakState = state_;
    state_->observerId =
        store->addObserver(state_->key, [weakState, prior](const PreferencesChange& change) {
            auto state = weakState.lock();
            if (!state || !state->observing) return;
            if (change.isPrior && !prior) return;
            if (threadUpdatingValues) return;
            if (state->selfWhileOwned && state->owner.expired()) {
                // Hold ourselves until invalidate() has finished with this object.
                auto self = std::move(state->selfWhileOwned);
                self->invalidate();
                return;
            }
            state->callback(change);
        });
    state_->observing = true;
    if (initial && !threadUpdatingValues) {
        state_->callback(PreferencesChange{state_->key, std::nullopt, store->object(state_->key)});
    }
}

void KeyObservation::invalidate() {
    if (!state_->observing) return;
    state_->observing = false;
    if (auto store = state_->store.lock()) store->removeObserver(state_->observerId);
    state_->selfWhileOwned.reset();
}

bool KeyObservation::isObserving() const { return state_->observing; }

void KeyObservation::tieToLifetime(std::weak_ptr<const void> owner) {
    state_->owner = std::move(owner);
    state_->selfWhileOwned = shared_from_this();
}

CompositeKeyObservation::CompositeKeyObservation(std::vector<SuiteKeyPair> pairs,
                                                 ObservationOption options,
                                                 std::function<void()> callback) {
    auto shared = std::make_shared<std::function<void()>>(std::move(callback));
    for (auto& [store, key] : pairs) {
        observations_.push_back(
            std::make_shared<KeyObservation>(std::move(store), std::move(key), options,
                                             [shared](const PreferencesChange&) { (*shared)(); }));
    }
}

void CompositeKeyObservation::start() {
    for (auto& observation : observations_) observation->start();
}

void CompositeKeyObservation::invalidate() {
    for (auto& observation : observations_) observation->invalidate();
}

bool CompositeKeyObservation::isObserving() const {
    for (const auto& observation : observations_) {
        if (observation->isObserving()) return true;
    }
    return false;
}

}  // namespace marzipel
