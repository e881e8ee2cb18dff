#include "platform/qt/qt_image_loader.h"

#include <QImage>
#include <QImageReader>

#include <cstring>

namespace marzipel {

namespace {

/// Icon containers hold one picture per size and do not tell the sizes before decoding; the
/// largest picture is the best to scale from.
QImage readLargestImage(QImageReader& reader) {
    QImage largest;
    for (int index = 0; index < reader.imageCount() && reader.jumpToImage(index); ++index) {
        QImage next = reader.read();
        if (qint64(next.width()) * next.height() > qint64(largest.width()) * largest.height()) {
            largest = std::move(next);
        }
    }
    return largest;
}

/// Vector pictures are rendered at the size wanted to stay sharp; decoders that can scale while
/// decoding spare the full-size copy.
QImage readFitted(QImageReader& reader, int maxSide) {
    const QSize natural = reader.size();
    const bool vector = reader.format() == "svg" || reader.format() == "svgz";
    const bool tooLarge = natural.width() > maxSide || natural.height() > maxSide;
    if (natural.isValid() && (vector || tooLarge) &&
        reader.supportsOption(QImageIOHandler::ScaledSize)) {
        reader.setScaledSize(natural.scaled(maxSide, maxSide, Qt::KeepAspectRatio));
    }
    return reader.read();
}

Image imageFromQImage(const QImage& picture) {
    const QImage argb = picture.convertToFormat(QImage::Format_ARGB32);
    Image image;
    image.width = argb.width();
    image.height = argb.height();
    image.pixels.resize(std::size_t(image.width) * image.height);
    for (int y = 0; y < image.height; ++y) {
        std::memcpy(image.pixels.data() + std::size_t(y) * image.width, argb.constScanLine(y),
                    std::size_t(image.width) * sizeof(std::uint32_t));
    }
    return image;
}

}  // namespace

Image QtImageLoader::loadImage(const std::string& path, int maxSide) const {
    if (maxSide <= 0) return {};
    QImageReader reader(QString::fromStdString(path));
    reader.setAutoTransform(true);
    QImage picture =
        reader.imageCount() > 1 ? readLargestImage(reader) : readFitted(reader, maxSide);
    if (picture.isNull()) return {};
    if (picture.width() > maxSide || picture.height() > maxSide) {
        picture = picture.scaled(maxSide, maxSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return imageFromQImage(picture);
}

}  // namespace marzipel
