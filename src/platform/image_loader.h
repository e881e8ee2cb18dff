#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marzipel {

/// A decoded picture: `width` x `height` pixels, row by row, each 0xAARRGGBB (not
/// premultiplied). An image with no pixels is the empty image.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    bool isEmpty() const { return pixels.empty(); }
    friend bool operator==(const Image&, const Image&) = default;
};

/// Reads picture files (PNG, SVG, ICNS and whatever else the platform decodes). Main thread.
class ImageLoader {
public:
    virtual ~ImageLoader() = default;
    /// The picture in the file at `path`, at its largest size but no larger than
    /// `maxSide` x `maxSide` pixels (scaled down with its aspect ratio kept); the empty image
    /// when the file is missing, unreadable or not a picture.
    virtual Image loadImage(const std::string& path, int maxSide) const = 0;
};

}  // namespace marzipel
