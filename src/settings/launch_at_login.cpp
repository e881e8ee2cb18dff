#include "settings/launch_at_login.h"

#include <vector>

namespace marzipel {
namespace {

constexpr std::string_view kLogSubsystem = "com.quintavellor.LaunchAtLogin";
constexpr std::string_view kLogCategory = "main";

}  // namespace

LaunchAtLogin::LaunchAtLogin(LoginItemService& service, SystemLog& systemLog)
    : service_(service), systemLog_(systemLog) {}

bool LaunchAtLogin::isEnabled() const { return service_.status() == LoginItemStatus::enabled; }

void LaunchAtLogin::setEnabled(bool enabled) {
    // A listener may add or remove listeners while being told.
    std::vector<std::function<void()>> listeners;
    for (const auto& [id, listener] : willChange_) listeners.push_back(listener);
    for (const auto& listener : listeners) listener();

    if (enabled) {
        // Unregistering first makes switching on while on refresh the registration; if that
        // fails, registering is still worth a try, so the failure is not reported.
        if (service_.status() == LoginItemStatus::enabled) service_.unregisterItem();
        LoginItemResult result = service_.registerItem();
        if (!result.succeeded) logFailure("enable", result.errorText);
    } else {
        LoginItemResult result = service_.unregisterItem();
        if (!result.succeeded) logFailure("disable", result.errorText);
    }
}

LaunchAtLogin::ListenerId LaunchAtLogin::addWillChangeListener(std::function<void()> listener) {
    ListenerId id = nextListenerId_++;
    willChange_.emplace(id, std::move(listener));
    return id;
}

void LaunchAtLogin::removeWillChangeListener(ListenerId id) { willChange_.erase(id); }

void LaunchAtLogin::logFailure(const char* verb, const std::string& errorText) {
    systemLog_.error(kLogSubsystem, kLogCategory,
                     "Failed to " + std::string(verb) + " launch at login: " + errorText);
}

}  // namespace marzipel
