#pragma once

#include <QIcon>

namespace marzipel {

/// The symbols the windows and the tray draw.
enum class IconName { tray, gear, apps, film, trash, plus, refresh, moonHaze, light };

/// The icon of this meaning: the desktop theme's own where the freedesktop icon naming has one
/// and the theme provides it, else our artwork.
QIcon themedIcon(IconName name);

/// Our own artwork, whatever the desktop theme.
QIcon ownIcon(IconName name);

}  // namespace marzipel
