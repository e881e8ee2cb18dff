#pragma once

#include <map>
#include <string>

#include "platform/image_loader.h"

namespace marzipel {

/// Pictures a test has put at given paths; every other path reads as the empty image.
class SimImageLoader final : public ImageLoader {
public:
    Image loadImage(const std::string& path, int /*maxSide*/) const override {
        auto it = images.find(path);
        return it == images.end() ? Image{} : it->second;
    }

    std::map<std::string, Image> images;
};

}  // namespace marzipel
