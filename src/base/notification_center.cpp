#include "base/notification_center.h"

namespace marzipel {

Subscription NotificationCenter::subscribe(std::string name, const void* sender, Handler handler) {
    return byName_[std::move(name)].connect(
        [sender, handler = std::move(handler)](const Notification& notification) {
            if (sender == nullptr || notification.sender == sender) handler(notification);
        });
}

void NotificationCenter::post(std::string_view name, const void* sender) {
    auto it = byName_.find(name);
    if (it == byName_.end()) return;
    it->second.emit(Notification{name, sender});
}

}  // namespace marzipel
