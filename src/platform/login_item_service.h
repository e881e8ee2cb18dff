#pragma once

#include "base/status.h"

namespace marzipel {

/// Registration state of the application's own login item, as the platform reports it.
enum class LoginItemStatus { notRegistered = 0, enabled = 1, requiresApproval = 2, notFound = 3 };

/// The platform's service that starts the application itself when the user logs in. It is the
/// only record of the setting: every call asks the platform afresh. Main thread.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;
    /// The current registration status.
    virtual LoginItemStatus status() const = 0;
    /// Registers the application to start at login. A failure carries the platform's text for
    /// why the change was not made.
    virtual Status registerItem() = 0;
    /// Removes the registration; fails as `registerItem` does.
    virtual Status unregisterItem() = 0;
};

}  // namespace marzipel
