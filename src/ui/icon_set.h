#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QSize>

namespace marzipel {

/// The symbols the windows and the tray draw.
enum class IconName { tray, gear, apps, film, trash, plus, refresh, moonHaze, light };

/// The icon of this meaning: the desktop theme's own where the freedesktop icon naming has one
/// and the theme provides it, else our artwork.
QIcon themedIcon(IconName name);

/// Our own artwork, whatever the desktop theme, in the application palette's text colour (and
/// its disabled and highlighted text colours for those modes), so that it reads on light and
/// dark windows alike. Falls back to a style icon when the artwork cannot be read.
QIcon ownIcon(IconName name);

/// The size our artwork is drawn for, in device-independent pixels.
QSize artworkSize(IconName name);

/// Our artwork drawn in `color` into `devicePixels`, aspect ratio kept and centred; a null
/// image when the artwork cannot be read.
QImage tintedArtwork(IconName name, QSize devicePixels, const QColor& color);

}  // namespace marzipel
