#include "platform/sim/sim_login_item_service.h"

namespace marzipel {

LoginItemStatus SimLoginItemService::status() const {
    calls.emplace_back("status");
    return currentStatus;
}

LoginItemResult SimLoginItemService::registerItem() {
    calls.emplace_back("register");
    if (registerError) return LoginItemResult::failure(*registerError);
    currentStatus = LoginItemStatus::enabled;
    return LoginItemResult::success();
}

LoginItemResult SimLoginItemService::unregisterItem() {
    calls.emplace_back("unregister");
    if (unregisterError) return LoginItemResult::failure(*unregisterError);
    currentStatus = LoginItemStatus::notRegistered;
    return LoginItemResult::success();
}

}  // namespace marzipel
