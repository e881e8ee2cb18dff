#pragma once

#include <string>
#include <utility>

namespace marzipel {

/// Registration state of the application's own login item, as the platform reports it.
enum class LoginItemStatus { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

/// Outcome of changing the registration: success, or the platform's text for the failure.
struct LoginItemResult {
    /// Whether the change was made.
    bool succeeded = true;
    /// The platform's description of the failure; empty on success.
    std::string errorText;

    /// A successful change.
    static LoginItemResult success() { return {}; }
    /// A refused change, described by `text`.
    static LoginItemResult failure(std::string text) { return {false, std::move(text)}; }
};

/// The platform's service that starts the application itself when the user logs in. It is the
/// only record of the setting: every call asks the platform afresh. Main thread.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;
    /// The current registration status.
    virtual LoginItemStatus status() const = 0;
    /// Registers the application to start at login.
    virtual LoginItemResult registerItem() = 0;
    /// Removes the registration.
    virtual LoginItemResult unregisterItem() = 0;
};

}  // namespace marzipel
