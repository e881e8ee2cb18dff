#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "base/signal.h"
#include "base/subscription.h"

namespace marzipel {

/// One posted notification. It carries no user info.
struct Notification {
    std::string_view name;
    /// The object that posted it; compared by address only.
    const void* sender = nullptr;
};

/// The program's notification bus: subscribers by name, optionally only for one sender.
/// A post is delivered synchronously on the posting thread, in subscription order, to the
/// subscriptions that exist when it starts and are still alive when their turn comes.
/// Main thread only; the program has one, handed to whoever posts or listens.
class NotificationCenter {
public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// Calls `handler` for each post of `name` whose sender is `sender` (any sender when null)
    /// until the returned token is dropped or cancelled.
    [[nodiscard]] Subscription subscribe(std::string name, const void* sender, Handler handler);

    /// Delivers a notification named `name` from `sender`.
    void post(std::string_view name, const void* sender);

private:
    std::map<std::string, Signal<const Notification&>, std::less<>> byName_;
};

}  // namespace marzipel
