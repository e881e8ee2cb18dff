#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

#include "base/subscription.h"

namespace marzipel {

/// A list of listeners called synchronously, in the order they connected. A delivery reaches
/// the listeners connected when it starts that are still connected when their turn comes.
/// Main thread only.
template <typename... Args>
class Signal {
public:
    using Listener = std::function<void(Args...)>;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    /// Calls `listener` on every emit until the returned subscription ends.
    [[nodiscard]] Subscription connect(Listener listener) {
        auto slot = std::make_shared<Slot>(Slot{std::move(listener), true});
        slots_->push_back(slot);
        return Subscription(
            [weakSlots = std::weak_ptr<Slots>(slots_), weakSlot = std::weak_ptr<Slot>(slot)] {
                auto slot = weakSlot.lock();
                if (!slot) return;
                slot->connected = false;
                if (auto slots = weakSlots.lock()) std::erase(*slots, slot);
            });
    }

    /// Calls the connected listeners with `args`.
    void emit(const std::remove_cvref_t<Args>&... args) const {
        // A copy, so that listeners may connect and disconnect while being called.
        const Slots snapshot = *slots_;
        for (const auto& slot : snapshot) {
            if (slot->connected) slot->listener(args...);
        }
    }

    /// Whether any listener is connected.
    bool empty() const { return slots_->empty(); }

private:
    struct Slot {
        Listener listener;
        bool connected;
    };
    using Slots = std::vector<std::shared_ptr<Slot>>;

    std::shared_ptr<Slots> slots_ = std::make_shared<Slots>();
};

}  // namespace marzipel
