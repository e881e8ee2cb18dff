// Renders the program's icon into the PNG files of a macOS .iconset folder, for iconutil:
//   marzipel-render-iconset ICON.svg OUT.iconset
// The icon is the one the Linux package installs: the mark on a light plate of the size and
// corner radius macOS gives application icons, so one drawing serves both.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

QImage renderIcon(QSvgRenderer& icon, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    icon.render(&painter, QRectF(0, 0, side, side));
    return image;
}

}  // namespace

int main(int argc, char* argv[]) {
    QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: marzipel-render-iconset ICON.svg OUT.iconset\n");
        return 2;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    if (!icon.isValid()) {
        std::fprintf(stderr, "marzipel-render-iconset: cannot read %s\n", argv[1]);
        return 1;
    }
    const QDir iconset(QString::fromLocal8Bit(argv[2]));
    if (!iconset.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "marzipel-render-iconset: cannot make %s\n", argv[2]);
        return 1;
    }
    // The sizes iconutil expects, each at one and two pixels per point.
    for (int points : {16, 32, 128, 256, 512}) {
        for (int scale : {1, 2}) {
            const QString name = scale == 1 ? QStringLiteral("icon_%1x%1.png").arg(points)
                                            : QStringLiteral("icon_%1x%1@2x.png").arg(points);
            if (!renderIcon(icon, points * scale).save(iconset.filePath(name))) {
                std::fprintf(stderr, "marzipel-render-iconset: cannot write %s\n",
                             qPrintable(iconset.filePath(name)));
                return 1;
            }
        }
    }
    return 0;
}
