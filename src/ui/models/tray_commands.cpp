#include "ui/models/tray_commands.h"

namespace marzipel {

PointSize trayIconSize(PointSize imageSize) {
    if (imageSize.width <= 0 || imageSize.height <= 0) return {kTrayIconHeight, kTrayIconHeight};
    const double ratio = imageSize.height / imageSize.width;
    return {kTrayIconHeight / ratio, kTrayIconHeight};
}

void openSettingsFromTray(const OpenSettingsAccessAction& openSettings, Application& application) {
    if (hasPlatformSettingsLink(application)) {
        pressSettingsButton(openSettings, application, nullptr, [&] { application.activate(); });
        return;
    }
    application.activate();
    application.sendAction("showSettingsWindow:");
}

}  // namespace marzipel
