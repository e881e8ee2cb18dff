#include "platform/linux/windows/linux_window_source.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFileInfo>

#include <cstdlib>

#include "platform/linux/brightness/linux_brightness_service.h"
#include "platform/linux/dbus/desktop_notification.h"
#include "platform/linux/dbus/marzipel_bus_service.h"
#include "platform/linux/playback/linux_power_assertions.h"
#include "platform/linux/windows/gnome/gnome_shell_windows.h"
#include "platform/linux/windows/kwin/kwin_window_source.h"
#include "platform/linux/windows/reported_windows.h"
#include "platform/linux/windows/sway/sway_window_source.h"
#include "platform/linux/windows/x11/x11_space_monitor.h"
#include "platform/linux/windows/x11/x11_workspace.h"

namespace marzipel {

namespace {

constexpr char kScriptFile[] = "kwin_window_reports.js";

constexpr char kWorkingSessions[] =
    "Full screen is seen in X11 sessions and in the Wayland sessions of GNOME, KDE Plasma and "
    "Sway; choose one of them at the login screen, or open the settings by starting Marzipel "
    "again.";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

SessionFacts currentSessionFacts() {
    SessionFacts facts{environment("XDG_SESSION_TYPE"), environment("XDG_CURRENT_DESKTOP"),
                       !environment("WAYLAND_DISPLAY").empty(), !environment("SWAYSOCK").empty(),
                       false};
    if (const auto* bus = QDBusConnection::sessionBus().interface())
        facts.kwinOnBus = bus->isServiceRegistered(QStringLiteral("org.kde.KWin"));
    return facts;
}

QString kwinScriptPath() {
    const QString folder = QCoreApplication::applicationDirPath();
    const QString installed = folder + QStringLiteral("/../share/marzipel/") + kScriptFile;
    if (QFileInfo::exists(installed)) return QFileInfo(installed).canonicalFilePath();
    return folder + QLatin1Char('/') + kScriptFile;
}

LinuxWindowSource::LinuxWindowSource(const WindowSourceChoice& choice,
                                     const DesktopEntries& entries, SystemLog& log,
                                     LinuxBrightnessServiceFactory& brightness,
                                     LinuxPowerAssertions& powerAssertions, MarzipelBusService* bus)
    : entries_(entries), readAhead_([&brightness, &powerAssertions] {
          brightness.readAhead();
          powerAssertions.readAhead();
      }) {
    switch (choice.kind) {
        case WindowSourceKind::x11:
            log.info(kAppLogSubsystem, kAppLogCategory,
                     "Watching windows through X11: " + choice.reason);
            startX11(log);
            return;
        case WindowSourceKind::sway:
            log.info(kAppLogSubsystem, kAppLogCategory,
                     "Watching windows through Sway's IPC socket: " + choice.reason);
            startSway(log);
            return;
        case WindowSourceKind::gnomeShell:
            log.info(kAppLogSubsystem, kAppLogCategory,
                     "Watching windows through GNOME Shell: " + choice.reason);
            startGnomeShell(log);
            return;
        case WindowSourceKind::kwin:
            if (bus) {
                log.info(kAppLogSubsystem, kAppLogCategory,
                         "Watching windows through a KWin script: " + choice.reason);
                startKWin(log, *bus);
                return;
            }
            log.error(kAppLogSubsystem, kAppLogCategory,
                      "Full screen cannot be seen in this session: " + choice.reason +
                          ", but no session bus to hear KWin on");
            startUnsupported();
            return;
        case WindowSourceKind::none:
            log.error(kAppLogSubsystem, kAppLogCategory,
                      "Full screen cannot be seen in this session: " + choice.reason);
            startUnsupported();
            return;
    }
}

LinuxWindowSource::~LinuxWindowSource() = default;

void LinuxWindowSource::startX11(SystemLog& log) {
    x11Workspace_ = std::make_unique<X11Workspace>(entries_);
    // After what its read-ahead handlers reach, so that it goes first.
    x11SpaceMonitor_ = std::make_unique<X11SpaceMonitor>(log);
    x11SpaceMonitor_->setChangeArrivingHandler(
        [workspace = x11Workspace_.get()](std::uint32_t window) { workspace->readAhead(window); });
    x11SpaceMonitor_->setFullScreenLikelyHandler(readAhead_);
    spaceMonitor_ = x11SpaceMonitor_.get();
    workspace_ = x11Workspace_.get();
}

void LinuxWindowSource::startKWin(SystemLog& log, MarzipelBusService& bus) {
    useReportedWindows();
    kwin_ = std::make_unique<KWinWindowSource>(*reported_, bus, kwinScriptPath(), log);
}

void LinuxWindowSource::startGnomeShell(SystemLog& log) {
    useReportedWindows();
    gnomeShell_ = std::make_unique<GnomeShellWindows>(*reported_, log);
}

void LinuxWindowSource::startSway(SystemLog& log) {
    useReportedWindows();
    sway_ = std::make_unique<SwayWindowSource>(*reported_, log);
    sway_->start(environment("SWAYSOCK"));
}

void LinuxWindowSource::startUnsupported() {
    showDesktopNotification("Marzipel cannot see full screen in this session", kWorkingSessions);
    useReportedWindows();
}

void LinuxWindowSource::useReportedWindows() {
    reported_ = std::make_unique<ReportedWindows>(entries_);
    reported_->setFullScreenLikelyHandler(readAhead_);
    spaceMonitor_ = reported_.get();
    workspace_ = reported_.get();
}

}  // namespace marzipel
