#include "platform/macos/mac_login_item_service.h"

#import <ServiceManagement/ServiceManagement.h>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {
namespace {

Status result(BOOL succeeded, NSError* error) {
    if (succeeded) return Status();
    return Status::failure(utf8String(error.localizedDescription));
}

}  // namespace

LoginItemStatus MacLoginItemService::status() const {
    switch (SMAppService.mainAppService.status) {
        case SMAppServiceStatusNotRegistered:
            return LoginItemStatus::notRegistered;
        case SMAppServiceStatusEnabled:
            return LoginItemStatus::enabled;
        case SMAppServiceStatusRequiresApproval:
            return LoginItemStatus::requiresApproval;
        case SMAppServiceStatusNotFound:
            return LoginItemStatus::notFound;
    }
    return LoginItemStatus::notFound;
}

Status MacLoginItemService::registerItem() {
    NSError* error = nil;
    const BOOL succeeded = [SMAppService.mainAppService registerAndReturnError:&error];
    return result(succeeded, error);
}

Status MacLoginItemService::unregisterItem() {
    NSError* error = nil;
    const BOOL succeeded = [SMAppService.mainAppService unregisterAndReturnError:&error];
    return result(succeeded, error);
}

}  // namespace marzipel
