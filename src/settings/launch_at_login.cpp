#include "settings/launch_at_login.h"

namespace marzipel {
namespace {

constexpr std::string_view kLogSubsystem = "com.quintavellor.LaunchAtLogin";
constexpr std::string_view kLogCategory = "main";

}  // namespace

LaunchAtLogin::LaunchAtLogin(LoginItemService& service, SystemLog& systemLog)
    : service_(service), systemLog_(systemLog) {}

bool LaunchAtLogin::isEnabled() const { return service_.status() == LoginItemStatus::enabled; }

void LaunchAtLogin::setEnabled(bool enabled) {
    willChange_.emit();

    if (enabled) {
        // Unregistering first makes switching on while on refresh the registration; if that
        // fails, registering is still worth a try, so the failure is not reported.
        if (service_.status() == LoginItemStatus::enabled) (void)service_.unregisterItem();
        const Status registered = service_.registerItem();
        if (!registered.ok()) logFailure("enable", registered.message());
    } else {
        const Status unregistered = service_.unregisterItem();
        if (!unregistered.ok()) logFailure("disable", unregistered.message());
    }
}

void LaunchAtLogin::logFailure(const char* verb, const std::string& errorText) {
    systemLog_.error(kLogSubsystem, kLogCategory,
                     "Failed to " + std::string(verb) + " launch at login: " + errorText);
}

}  // namespace marzipel
