#pragma once

#include "platform/login_item_service.h"

namespace marzipel {

/// ServiceManagement's login item of the running application itself
/// (SMAppService.mainAppService). Main thread.
class MacLoginItemService final : public LoginItemService {
public:
    LoginItemStatus status() const override;
    /// A failure carries the error's localized description.
    Status registerItem() override;
    Status unregisterItem() override;
};

}  // namespace marzipel
