#pragma once

#include <functional>
#include <utility>

namespace marzipel {

/// Keeps one subscription alive; destroying or cancelling it ends the subscription. Move-only.
/// Cancelling is safe from inside a delivery, also of the subscription itself, and after the
/// source is gone.
class Subscription {
public:
    Subscription() = default;
    /// Takes the step that ends the subscription; it runs at most once.
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, {})) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, {});
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    /// Ends the subscription now; later calls do nothing.
    void cancel() {
        if (auto cancel = std::exchange(cancel_, {})) cancel();
    }
    /// Whether this token still holds a subscription.
    explicit operator bool() const { return static_cast<bool>(cancel_); }

private:
    std::function<void()> cancel_;
};

}  // namespace marzipel
