#pragma once

#include <QPixmap>
#include <optional>
#include <string>

#include "platform/image_loader.h"

namespace marzipel {

/// `image` as a pixmap of its own size; the empty image (or one whose pixel count does not match
/// its size) gives a transparent pixmap of `side` x `side`.
QPixmap pixmapFromImage(const Image& image, int side);

/// An app's icon for a list row, `side` x `side` device-independent pixels: the picture at
/// `iconPath`, or an empty (transparent) image when there is no path or it cannot be read.
QPixmap appIconPixmap(const ImageLoader& loader, const std::optional<std::string>& iconPath,
                      int side);

}  // namespace marzipel
