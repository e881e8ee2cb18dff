#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/login_item_service.h"

namespace marzipel {

/// A login item held in memory. Records each call ("status", "register", "unregister"); a
/// successful register makes the status `enabled`, a successful unregister `notRegistered`.
class SimLoginItemService final : public LoginItemService {
public:
    LoginItemStatus status() const override;
    /// Fails with `registerError` when set, leaving the status as it was.
    Status registerItem() override;
    /// Fails with `unregisterError` when set, leaving the status as it was.
    Status unregisterItem() override;

    /// What `status` answers.
    LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
    /// When set, registering fails with this text.
    std::optional<std::string> registerError;
    /// When set, unregistering fails with this text.
    std::optional<std::string> unregisterError;
    /// "status", "register", "unregister", in call order.
    mutable std::vector<std::string> calls;
};

}  // namespace marzipel
