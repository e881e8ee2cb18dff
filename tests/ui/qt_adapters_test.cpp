#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/qt/qt_image_loader.h"
#include "ui/pixmaps.h"

using namespace marzipel;

namespace {

/// An icon container as applications ship them: several sizes, the smallest first.
QByteArray icnsWithSizes(const QList<QPair<QByteArray, int>>& entries) {
    QByteArray body;
    QDataStream out(&body, QIODevice::WriteOnly);
    for (const auto& [type, side] : entries) {
        QImage square(side, side, QImage::Format_ARGB32);
        square.fill(Qt::blue);
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        square.save(&png, "PNG");
        out.writeRawData(type.constData(), 4);
        out << quint32(8 + png.size());
        out.writeRawData(png.data().constData(), int(png.size()));
    }
    QByteArray icns("icns");
    QDataStream(&icns, QIODevice::Append) << quint32(8 + body.size());
    return icns + body;
}

}  // namespace

class QtAdaptersTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir dir_;
    QtImageLoader loader_;

    std::string path(const char* name) const { return dir_.filePath(name).toStdString(); }
    void writeFile(const char* name, const QByteArray& bytes) const {
        QFile file(dir_.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

private Q_SLOTS:
    void readsPixelsAsStraightArgb() {
        QImage picture(2, 1, QImage::Format_ARGB32);
        picture.setPixel(0, 0, 0x80ff0000);
        picture.setPixel(1, 0, 0xff00ff00);
        QVERIFY(picture.save(dir_.filePath("two.png")));

        const Image image = loader_.loadImage(path("two.png"), 64);
        QCOMPARE(QSize(image.width, image.height), QSize(2, 1));
        QCOMPARE(image.pixels, (std::vector<std::uint32_t>{0x80ff0000, 0xff00ff00}));
        const QImage shown = pixmapFromImage(image, 45).toImage();
        QCOMPARE(shown.convertToFormat(QImage::Format_ARGB32).pixel(0, 0), 0x80ff0000u);
    }

    void readsVectorAndIconContainersAndNothingFromUnreadableFiles() {
        writeFile("symbol.svg",
                  "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='8'>"
                  "<rect width='16' height='8' fill='black'/></svg>");
        const Image vector = loader_.loadImage(path("symbol.svg"), 64);
        QCOMPARE(QSize(vector.width, vector.height), QSize(64, 32));

        writeFile("App.icns", icnsWithSizes({{"ic07", 128}, {"ic08", 256}}));
        const Image icon = loader_.loadImage(path("App.icns"), 512);
        QCOMPARE(QSize(icon.width, icon.height), QSize(256, 256));
        QCOMPARE(icon.pixels.front(), 0xff0000ffu);

        writeFile("garbage.png", "\x89PNG but not really a picture");
        writeFile("Broken.icns", icnsWithSizes({{"ic08", 256}}).left(60));
        for (const char* name : {"garbage.png", "Broken.icns", "missing.png"})
            QVERIFY2(loader_.loadImage(path(name), 64).isEmpty(), name);
    }

    void iconsAreScaledDownIntoTheirSquareOrStayTransparent() {
        QImage wide(400, 200, QImage::Format_ARGB32);
        wide.fill(Qt::red);
        QVERIFY(wide.save(dir_.filePath("wide.png")));
        const QImage icon = appIconPixmap(loader_, path("wide.png"), 45).toImage();
        QCOMPARE(icon.size(), QSize(45, 45));
        QCOMPARE(qAlpha(icon.pixel(22, 2)), 0);
        QCOMPARE(icon.pixel(22, 22), QColor(Qt::red).rgba());

        for (const auto& missing : {std::optional<std::string>(), std::optional(path("no.icns"))}) {
            const QImage empty = appIconPixmap(loader_, missing, 45).toImage();
            QCOMPARE(empty.size(), QSize(45, 45));
            QCOMPARE(qAlpha(empty.pixel(22, 22)), 0);
        }
    }
};

QTEST_MAIN(QtAdaptersTest)
#include "qt_adapters_test.moc"
