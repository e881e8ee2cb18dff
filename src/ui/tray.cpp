#include "ui/tray.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QSystemTrayIcon>

#include "ui/icon_set.h"
#include "ui/models/tray_commands.h"

namespace marzipel {
namespace {

/// A menu entry showing `text` as it is, not reading "&" as a mnemonic marker.
QString literalMenuText(const std::string& text) {
    return QString::fromStdString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// The platform's quit keys; where it names none, the command key (Ctrl elsewhere) with Q.
QList<QKeySequence> quitKeys() {
    QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::Quit);
    if (keys.isEmpty()) keys.append(QKeySequence(Qt::CTRL | Qt::Key_Q));
    return keys;
}

bool menuBarTintsTemplates() { return QGuiApplication::platformName() == QLatin1String("cocoa"); }

/// The mark in `fill` inside a one-device-pixel-per-point outline in `outline`.
QImage outlinedMark(QSize devicePixels, qreal scale, const QColor& fill, const QColor& outline) {
    const int border = qMax(1, qRound(scale));
    const QSize inner = devicePixels - QSize(2 * border, 2 * border);
    const QImage shape = tintedArtwork(IconName::tray, inner, outline);
    const QImage face = tintedArtwork(IconName::tray, inner, fill);
    if (shape.isNull()) return {};
    QImage image(devicePixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (int dx = -border; dx <= border; dx += border) {
        for (int dy = -border; dy <= border; dy += border) {
            painter.drawImage(border + dx, border + dy, shape);
        }
    }
    painter.drawImage(border, border, face);
    return image;
}

}  // namespace

QIcon trayIconImage() {
    const QSize artwork = artworkSize(IconName::tray);
    const PointSize points = trayIconSize({double(artwork.width()), double(artwork.height())});
    const bool isTemplate = menuBarTintsTemplates();
    QIcon icon;
    for (qreal scale : {1.0, 2.0}) {
        const QSize pixels(qRound(points.width * scale), qRound(points.height * scale));
        QImage image = isTemplate ? tintedArtwork(IconName::tray, pixels, Qt::black)
                                  : outlinedMark(pixels, scale, QColor(0xf4, 0xf4, 0xf4),
                                                 QColor(0x1e, 0x1e, 0x1e, 0xe6));
        if (image.isNull()) continue;
        QPixmap pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    icon.setIsMask(isTemplate);
    return icon;
}

MarzipelTray::MarzipelTray(TrayModel& model, const OpenSettingsAccessAction& openSettings,
                           Application& application, SystemLog& systemLog, QObject* parent)
    : QObject(parent),
      model_(model),
      openSettings_(openSettings),
      application_(application),
      menu_(std::make_unique<QMenu>()) {
    buildMenu();
    trayIcon_ = new QSystemTrayIcon(this);
    QIcon icon = trayIconImage();
    if (icon.isNull()) {
        systemLog.error(kAppLogSubsystem, kAppLogCategory,
                        "The menu-bar icon could not be drawn; showing a generic icon instead.");
        icon = QApplication::style()->standardIcon(QStyle::SP_ComputerIcon);
    }
    trayIcon_->setIcon(icon);
    trayIcon_->setToolTip(QStringLiteral("Marzipel"));
    trayIcon_->setContextMenu(menu_.get());
    // Panels that do not open the menu on a plain click report it as a trigger instead.
    connect(trayIcon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger && !menuBarTintsTemplates()) {
                    menu_->popup(QCursor::pos());
                }
            });
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        trayIcon_->show();
    } else {
        systemLog.error(kAppLogSubsystem, kAppLogCategory,
                        "No system tray is available: Marzipel keeps running without its "
                        "menu-bar icon.");
    }
}

MarzipelTray::~MarzipelTray() = default;

bool MarzipelTray::eventFilter(QObject* watched, QEvent* event) {
    if (watched == menu_.get() && event->type() == QEvent::KeyPress &&
        quit_->shortcuts().contains(
            QKeySequence(static_cast<QKeyEvent*>(event)->keyCombination()))) {
        quit_->trigger();
        return true;
    }
    return false;
}

void MarzipelTray::buildMenu() {
    statusLine_ = menu_->addAction(literalMenuText(model_.statusText()));
    statusLine_->setObjectName(QStringLiteral("statusLine"));
    statusLine_->setEnabled(false);
    statusChanged_ = model_.onStatusChanged(
        [this](const std::string& text) { statusLine_->setText(literalMenuText(text)); });

    QAction* configure = menu_->addAction(QStringLiteral("Configure"));
    configure->setObjectName(QStringLiteral("configure"));
    connect(configure, &QAction::triggered, this,
            [this] { openSettingsFromTray(openSettings_, application_); });

    menu_->addSeparator();

    QAction* about = menu_->addAction(QStringLiteral("About"));
    about->setObjectName(QStringLiteral("about"));
    connect(about, &QAction::triggered, this, [this] { model_.about(); });

    QAction* quit = menu_->addAction(QStringLiteral("Quit"));
    quit->setObjectName(QStringLiteral("quit"));
    quit->setShortcuts(quitKeys());
    connect(quit, &QAction::triggered, this, [this] { model_.quit(); });
    quit_ = quit;
    // An entry's shortcut only runs from a menu bar; the open popup is told by hand.
    menu_->installEventFilter(this);
}

}  // namespace marzipel
