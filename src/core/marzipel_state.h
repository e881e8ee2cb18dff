#pragma once

#include <functional>

#include "base/signal.h"
#include "base/subscription.h"

namespace marzipel {

/// Whether the system is active, for everyone who shows or follows it. Both fields start false.
/// Every assignment is announced, also one that does not change the value. Main thread only.
class MarzipelState {
public:
    enum class Field { isActive, triggerValue };
    /// Told which field is assigned and its new value.
    using Listener = std::function<void(Field field, bool newValue)>;

    MarzipelState() = default;
    MarzipelState(const MarzipelState&) = delete;
    MarzipelState& operator=(const MarzipelState&) = delete;

    /// True from a successful activation until the next deactivation.
    bool isActive() const { return isActive_; }
    void setIsActive(bool value) { assign(Field::isActive, isActive_, value); }

    /// A refresh toggle: writing its negation makes every observer look at the state again.
    bool triggerValue() const { return triggerValue_; }
    void setTriggerValue(bool value) { assign(Field::triggerValue, triggerValue_, value); }

    /// Called before the new value is stored; reading the field then still gives the old one.
    [[nodiscard]] Subscription onWillChange(Listener listener) {
        return willChange_.connect(std::move(listener));
    }
    /// Called once the new value is stored.
    [[nodiscard]] Subscription onDidChange(Listener listener) {
        return didChange_.connect(std::move(listener));
    }

private:
    void assign(Field field, bool& slot, bool value) {
        willChange_.emit(field, value);
        slot = value;
        didChange_.emit(field, value);
    }

    bool isActive_ = false;
    bool triggerValue_ = false;
    Signal<Field, bool> willChange_;
    Signal<Field, bool> didChange_;
};

}  // namespace marzipel
