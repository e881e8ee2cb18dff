// Renders every window in a light and a dark palette to PNG files, for people to look at.
// Usage: marzipel_screenshots OUTPUT_FOLDER

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QTabWidget>
#include <cstdio>

#include "core/marzipel_state.h"
#include "core/tray_model.h"
#include "ui/models/settings_access.h"
#include "ui/settings_window.h"
#include "ui/tray.h"
#include "ui/ui_world.h"
#include "ui/welcome_window.h"

namespace marzipel {
namespace {

/// Qt derives the roles from the button colour, light text included; lists stay a little
/// lighter than black.
QPalette darkPalette() {
    QPalette palette(QColor(60, 60, 64));
    palette.setColor(QPalette::Base, QColor(36, 36, 40));
    palette.setColor(QPalette::AlternateBase, QColor(46, 46, 50));
    return palette;
}

struct Player {
    const char* path;
    const char* id;
    const char* name;
    QColor colour;
};

const Player kPlayers[] = {
    {"/Applications/VLC.app", "org.videolan.vlc", "VLC", QColor(240, 120, 0)},
    {"/Applications/IINA.app", "com.colliderli.iina", "IINA", QColor(70, 90, 200)},
    {"/Applications/Plex.app", "tv.plex.desktop", "Plex", QColor(40, 40, 40)},
};

/// Installs the players in /Applications, each with a tile of its colour as icon, and makes
/// them triggers when asked.
void installPlayers(UiWorld& world, bool asTriggers) {
    for (const Player& player : kPlayers) {
        world.addBundle(player.path, player.id, player.name, "AppIcon");
        world.bundleFiles.addEntry("/Applications", player.path);
        const std::optional<AppItem> item = world.catalog.appItem(player.path);
        world.imageLoader.images[item->iconPath.value()] =
            Image{64, 64, std::vector<std::uint32_t>(64 * 64, player.colour.rgba())};
        if (asTriggers) world.settings.addTriggerApp(*item);
    }
}

class Shooter {
public:
    explicit Shooter(QString folder) : folder_(std::move(folder)) {}

    void save(QWidget& widget, const QString& name) {
        widget.ensurePolished();
        widget.adjustSize();
        QApplication::processEvents();
        save(widget.grab().toImage(), name);
    }
    /// `icon` at 2x on a panel strip of the palette's window colour, as a tray would show it.
    void savePanel(const QIcon& icon, const QString& name) {
        QImage strip(192, 56, QImage::Format_ARGB32);
        strip.fill(QApplication::palette().color(QPalette::Window));
        QPainter painter(&strip);
        const QPixmap pixmap = icon.pixmap(icon.actualSize(QSize(64, 18)), 2.0);
        const QSizeF size = pixmap.deviceIndependentSize() * 2;
        const QPointF at((strip.width() - size.width()) / 2, (strip.height() - size.height()) / 2);
        painter.drawPixmap(QRectF(at, size), pixmap, pixmap.rect());
        painter.end();
        save(strip, name);
    }
    void setPalette(const QString& name) { palette_ = name; }
    bool failed() const { return failed_; }

private:
    void save(const QImage& image, const QString& name) {
        const QString path = folder_ + "/" + name + "-" + palette_ + ".png";
        if (!image.save(path)) {
            std::fprintf(stderr, "could not write %s\n", qPrintable(path));
            failed_ = true;
        }
    }

    QString folder_;
    QString palette_;
    bool failed_ = false;
};

void shootTray(Shooter& shooter) {
    UiWorld world;
    world.runApp(42, "org.videolan.vlc", "VLC");
    world.sim.workspace.frontmostProcessId = 42;
    MarzipelState state;
    TrayModel model(state, world.sim.workspace, world.sim.application);
    OpenSettingsAccessAction openSettings(world.sim.application);
    MarzipelTray tray(model, openSettings, world.sim.application, world.sim.systemLog);
    shooter.savePanel(trayIconImage(), "tray-icon");
    shooter.save(*tray.menu(), "tray-waiting");
    state.setIsActive(true);
    shooter.save(*tray.menu(), "tray-active");
}

void shootSettings(Shooter& shooter) {
    UiWorld world;
    {
        SettingsWindow window(world.services());
        window.tabs()->setCurrentIndex(0);
        shooter.save(window, "general");
        window.viewModel().keyReleased(KeyRelease{'D', true, true, false});
        QApplication::processEvents();
        shooter.save(window, "general-advanced");
        window.tabs()->setCurrentIndex(1);
        shooter.save(window, "apps-empty");
    }
    installPlayers(world, true);
    world.runApp(7, "org.mozilla.firefox", "Firefox");
    world.runApp(8, "org.gnome.Totem", "Videos");
    SettingsWindow window(world.services());
    window.tabs()->setCurrentIndex(1);
    shooter.save(window, "apps-three");
}

void shootWelcome(Shooter& shooter, bool players, const QString& name) {
    UiWorld world;
    if (players) installPlayers(world, false);
    WelcomeWindowManager manager(world.services());
    manager.showWelcomeWindow();
    if (QWidget* window = manager.window()) {
        shooter.save(*window, name);
        window->hide();
    }
}

}  // namespace
}  // namespace marzipel

int main(int argc, char** argv) {
    using namespace marzipel;
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT_FOLDER\n", argv[0]);
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    Shooter shooter(folder);
    const QPalette light = QApplication::style()->standardPalette();
    for (const auto& [name, palette] :
         {std::pair{QString("light"), light}, std::pair{QString("dark"), darkPalette()}}) {
        QApplication::setPalette(palette);
        shooter.setPalette(name);
        shootTray(shooter);
        shootSettings(shooter);
        shootWelcome(shooter, true, "welcome-found");
        shootWelcome(shooter, false, "welcome-none");
    }
    std::printf("screenshots written to %s\n", qPrintable(folder));
    return shooter.failed() ? 1 : 0;
}
