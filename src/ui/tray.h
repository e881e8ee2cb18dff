#pragma once

#include <QObject>
#include <QPointer>
#include <memory>

#include "base/subscription.h"
#include "core/tray_model.h"
#include "platform/application.h"
#include "platform/system_log.h"
#include "ui/models/settings_access.h"

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace marzipel {

/// The program's icon in the menu bar or panel and its menu: the status line, "Configure",
/// "About" and "Quit". Holds no state of its own; the status line follows the TrayModel.
class MarzipelTray : public QObject {
    Q_OBJECT
public:
    /// Everything passed in must outlive the tray. Without a system tray it says so once in
    /// `systemLog` and keeps its menu, which then only tests and screenshots reach.
    MarzipelTray(TrayModel& model, const OpenSettingsAccessAction& openSettings,
                 Application& application, SystemLog& systemLog, QObject* parent = nullptr);
    ~MarzipelTray() override;

    /// The menu the icon opens; its actions are named "statusLine", "configure", "about" and
    /// "quit".
    QMenu* menu() const { return menu_.get(); }
    /// The icon in the panel.
    QSystemTrayIcon* trayIcon() const { return trayIcon_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenu();

    TrayModel& model_;
    const OpenSettingsAccessAction& openSettings_;
    Application& application_;
    std::unique_ptr<QMenu> menu_;
    QAction* statusLine_ = nullptr;
    QAction* quit_ = nullptr;
    QSystemTrayIcon* trayIcon_ = nullptr;
    Subscription statusChanged_;
};

/// The tray's icon: our mark 18 points high with its aspect ratio kept, at 1x and 2x. A
/// template image where the menu bar tints it itself (macOS); elsewhere a light mark with a
/// dark outline, readable on light and dark panels alike.
QIcon trayIconImage();

}  // namespace marzipel
