// Renders the program's mark into the PNG files of a macOS .iconset folder, for iconutil:
//   marzipel-render-iconset MARK.svg OUT.iconset
// The mark is a single-colour template (the menu-bar icon), so it is drawn on a light plate of
// the size and corner radius macOS gives application icons; it then reads on light and dark
// backgrounds alike.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

// On a 1024-point canvas: the plate's inset and corner radius, and the mark's share of it.
constexpr qreal kCanvas = 1024;
constexpr qreal kPlateInset = 100;
constexpr qreal kPlateRadius = 185;
constexpr qreal kMarkShare = 0.62;

QImage renderIcon(QSvgRenderer& mark, int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / kCanvas, side / kCanvas);
    const QRectF plate(kPlateInset, kPlateInset, kCanvas - 2 * kPlateInset,
                       kCanvas - 2 * kPlateInset);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xf5, 0xf1, 0xe8));
    painter.drawRoundedRect(plate, kPlateRadius, kPlateRadius);
    QSizeF markSize = mark.viewBoxF().size();
    markSize.scale(plate.size() * kMarkShare, Qt::KeepAspectRatio);
    const QRectF markArea(plate.center() - QPointF(markSize.width(), markSize.height()) / 2,
                          markSize);
    mark.render(&painter, markArea);
    return image;
}

}  // namespace

int main(int argc, char* argv[]) {
    QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: marzipel-render-iconset MARK.svg OUT.iconset\n");
        return 2;
    }
    QSvgRenderer mark(QString::fromLocal8Bit(argv[1]));
    if (!mark.isValid()) {
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
            if (!renderIcon(mark, points * scale).save(iconset.filePath(name))) {
                std::fprintf(stderr, "marzipel-render-iconset: cannot write %s\n",
                             qPrintable(iconset.filePath(name)));
                return 1;
            }
        }
    }
    return 0;
}
