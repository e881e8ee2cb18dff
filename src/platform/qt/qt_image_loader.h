#pragma once

#include <string>

#include "platform/image_loader.h"

namespace marzipel {

/// Decodes picture files with Qt's image readers and their format plugins (ICNS, SVG and the
/// rest Qt offers). Needs a running QGuiApplication for the plugins. Main thread.
class QtImageLoader final : public ImageLoader {
public:
    Image loadImage(const std::string& path, int maxSide) const override;
};

}  // namespace marzipel
