#pragma once

#include "ui/models/settings_access.h"

namespace marzipel {

/// Width and height in points.
struct PointSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const PointSize&, const PointSize&) = default;
};

/// The menu-bar icon's height in points.
inline constexpr double kTrayIconHeight = 18.0;

/// The size the tray shows an icon of `imageSize` at: 18 points high, aspect ratio kept.
PointSize trayIconSize(PointSize imageSize);

/// "Configure": from 14.0 on the settings button with nothing before and the program brought
/// to the front after; before 14.0 the program comes to the front first and then
/// "showSettingsWindow:" goes along the responder chain.
void openSettingsFromTray(const OpenSettingsAccessAction& openSettings, Application& application);

}  // namespace marzipel
