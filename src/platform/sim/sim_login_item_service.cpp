#include "platform/sim/sim_login_item_service.h"

namespace marzipel {

LoginItemStatus SimLoginItemService::status() const {
    calls.emplace_back("status");
    return currentStatus;
}

Status SimLoginItemService::registerItem() {
    calls.emplace_back("register");
    if (registerError) return Status::failure(*registerError);
    currentStatus = LoginItemStatus::enabled;
    return Status();
}

Status SimLoginItemService::unregisterItem() {
    calls.emplace_back("unregister");
    if (unregisterError) return Status::failure(*unregisterError);
    currentStatus = LoginItemStatus::notRegistered;
    return Status();
}

}  // namespace marzipel
