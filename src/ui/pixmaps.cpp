#include "ui/pixmaps.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cmath>

namespace marzipel {

namespace {

QPixmap transparentPixmap(int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

}  // namespace

QPixmap pixmapFromImage(const Image& image, int side) {
    const bool consistent = image.width > 0 && image.height > 0 &&
                            image.pixels.size() == std::size_t(image.width) * image.height;
    if (!consistent) return transparentPixmap(side);
    const QImage view(reinterpret_cast<const uchar*>(image.pixels.data()), image.width,
                      image.height, image.width * int(sizeof(std::uint32_t)),
                      QImage::Format_ARGB32);
    // fromImage copies the pixels, so the view over `image` does not outlive this call.
    return QPixmap::fromImage(view);
}

QPixmap appIconPixmap(const ImageLoader& loader, const std::optional<std::string>& iconPath,
                      int side) {
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    const int deviceSide = int(std::ceil(side * ratio));
    QPixmap canvas = transparentPixmap(deviceSide);
    canvas.setDevicePixelRatio(ratio);
    if (!iconPath) return canvas;

    const Image image = loader.loadImage(*iconPath, deviceSide);
    if (image.isEmpty()) return canvas;
    const QPixmap picture = pixmapFromImage(image, deviceSide);
    const QSize fitted = picture.size().scaled(deviceSide, deviceSide, Qt::KeepAspectRatio);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Device pixels throughout: the canvas' ratio would otherwise scale the drawing again.
    painter.scale(1.0 / ratio, 1.0 / ratio);
    const QRect target(
        QPoint((deviceSide - fitted.width()) / 2, (deviceSide - fitted.height()) / 2), fitted);
    painter.drawPixmap(target, picture);
    return canvas;
}

}  // namespace marzipel
