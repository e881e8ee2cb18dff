#pragma once

#include <string>

namespace marzipel {

/// Shows a notification through the desktop's notification server
/// (org.freedesktop.Notifications) without waiting for it; nothing happens without one.
void showDesktopNotification(const std::string& summary, const std::string& body);

}  // namespace marzipel
