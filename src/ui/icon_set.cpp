#include "ui/icon_set.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QSvgRenderer>

// The artwork lives in this static library; its resources must be registered by hand, from
// outside any namespace.
static void registerIconResources() { Q_INIT_RESOURCE(icons); }

namespace marzipel {
namespace {

QString artworkFile(IconName name) {
    switch (name) {
        case IconName::tray:
            return QStringLiteral(":/icons/tray.svg");
        case IconName::gear:
            return QStringLiteral(":/icons/gear.svg");
        case IconName::apps:
            return QStringLiteral(":/icons/apps.svg");
        case IconName::film:
            return QStringLiteral(":/icons/film.svg");
        case IconName::trash:
            return QStringLiteral(":/icons/trash.svg");
        case IconName::plus:
            return QStringLiteral(":/icons/plus.svg");
        case IconName::refresh:
            return QStringLiteral(":/icons/refresh.svg");
        case IconName::moonHaze:
            return QStringLiteral(":/icons/moon_haze.svg");
        case IconName::light:
            return QStringLiteral(":/icons/light.svg");
    }
    return {};
}

QString resourcePath(IconName name) {
    static const bool registered = (registerIconResources(), true);
    (void)registered;
    return artworkFile(name);
}

/// The freedesktop icon naming's name of the same meaning; empty where it has none.
QString freedesktopName(IconName name) {
    switch (name) {
        case IconName::gear:
            return QStringLiteral("preferences-system");
        case IconName::apps:
            return QStringLiteral("applications-other");
        case IconName::trash:
            return QStringLiteral("edit-delete");
        case IconName::plus:
            return QStringLiteral("list-add");
        case IconName::refresh:
            return QStringLiteral("view-refresh");
        default:
            return {};
    }
}

QStyle::StandardPixmap styleFallback(IconName name) {
    switch (name) {
        case IconName::trash:
            return QStyle::SP_TrashIcon;
        case IconName::refresh:
            return QStyle::SP_BrowserReload;
        case IconName::gear:
            return QStyle::SP_FileDialogDetailedView;
        case IconName::apps:
            return QStyle::SP_FileDialogListView;
        case IconName::film:
            return QStyle::SP_MediaPlay;
        default:
            return QStyle::SP_ComputerIcon;
    }
}

/// Our artwork in black on transparent, aspect ratio kept and centred; null when unreadable.
QImage renderMask(QSvgRenderer& renderer, QSize devicePixels) {
    if (!renderer.isValid() || devicePixels.isEmpty()) return {};
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QImage image(devicePixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(image.rect()));
    return image;
}

QImage tinted(QImage mask, const QColor& color) {
    QPainter painter(&mask);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(mask.rect(), color);
    painter.end();
    return mask;
}

}  // namespace

QSize artworkSize(IconName name) {
    const QSvgRenderer renderer(resourcePath(name));
    return renderer.isValid() ? renderer.defaultSize() : QSize(24, 24);
}

QImage tintedArtwork(IconName name, QSize devicePixels, const QColor& color) {
    QSvgRenderer renderer(resourcePath(name));
    QImage mask = renderMask(renderer, devicePixels);
    return mask.isNull() ? mask : tinted(std::move(mask), color);
}

QIcon ownIcon(IconName name) {
    // Device-pixel sizes: the common icon sizes at 1x and 2x. QIcon picks by device pixels.
    static constexpr int kSides[] = {16, 18, 20, 24, 32, 36, 40, 48, 64, 96, 128};
    const QPalette palette = QGuiApplication::palette();
    const std::pair<QIcon::Mode, QColor> modes[] = {
        {QIcon::Normal, palette.color(QPalette::Active, QPalette::WindowText)},
        {QIcon::Disabled, palette.color(QPalette::Disabled, QPalette::WindowText)},
        {QIcon::Selected, palette.color(QPalette::Active, QPalette::HighlightedText)},
    };
    QSvgRenderer renderer(resourcePath(name));
    QIcon icon;
    for (int side : kSides) {
        const QImage mask = renderMask(renderer, QSize(side, side));
        if (mask.isNull()) break;
        for (const auto& [mode, color] : modes) {
            icon.addPixmap(QPixmap::fromImage(tinted(mask, color)), mode);
        }
    }
    if (icon.isNull() && qobject_cast<QApplication*>(QCoreApplication::instance())) {
        return QApplication::style()->standardIcon(styleFallback(name));
    }
    return icon;
}

QIcon themedIcon(IconName name) {
    const QString themeName = freedesktopName(name);
    if (themeName.isEmpty() || !QIcon::hasThemeIcon(themeName)) return ownIcon(name);
    return QIcon::fromTheme(themeName);
}

}  // namespace marzipel
