// Marzipel on Linux: Qt's application and windows over the X11, D-Bus and XDG adapters.

#include <QApplication>
#include <QIcon>
#include <clocale>
#include <memory>

#include "core/marzipel_app.h"
#include "detection/desktop_entry_catalog.h"
#include "platform/common/stdout_console.h"
#include "platform/linux/brightness/linux_brightness_service.h"
#include "platform/linux/dbus/marzipel_bus_service.h"
#include "platform/linux/files/plist_file_preferences_store.h"
#include "platform/linux/files/proc_run_marker.h"
#include "platform/linux/linux_application.h"
#include "platform/linux/local_clock.h"
#include "platform/linux/no_updater.h"
#include "platform/linux/playback/linux_power_assertions.h"
#include "platform/linux/process/linux_app_supervisor.h"
#include "platform/linux/syslog_system_log.h"
#include "platform/linux/windows/display_connection.h"
#include "platform/linux/windows/linux_window_source.h"
#include "platform/linux/xdg/linux_desktop_entries.h"
#include "platform/linux/xdg/xdg_autostart_login_item_service.h"
#include "platform/linux/xdg/xdg_base_directories.h"
#include "platform/linux/xdg/xdg_user_directories.h"
#include "platform/local/local_bundle_files.h"
#include "platform/qt/qt_file_picker.h"
#include "platform/qt/qt_image_loader.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"
#include "ui/models/settings_access.h"
#include "ui/models/tray_commands.h"
#include "ui/qt_main_loop.h"
#include "ui/settings_window.h"
#include "ui/tray.h"
#include "ui/ui_services.h"
#include "ui/welcome_window.h"

namespace {

constexpr char kAppId[] = "com.orsavelt.Marzipel";

/// The copy built into the program, the same picture the package puts into the icon theme.
/// Asking the theme for it would read the theme's index at every start (about 600 KiB) only to
/// find that picture again; the desktop itself finds it through the desktop entry.
QIcon applicationIcon() { return QIcon(QStringLiteral(":/com.orsavelt.Marzipel.svg")); }

}  // namespace

int main(int argc, char* argv[]) {
    using namespace marzipel;
    SyslogSystemLog systemLog;
    std::variant<SupervisedRun, int> supervised = superviseRuns(systemLog);
    if (const int* status = std::get_if<int>(&supervised)) return *status;
    SupervisedRun& run = std::get<SupervisedRun>(supervised);
    // Started again after the compositor or X server went away: without it Qt cannot start,
    // and what the last run switched off is to be put back now, not when the display returns.
    const bool displayGone = run.restarted() && !displayReachable();
    if (displayGone) qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication qtApplication(argc, argv);
    // Qt takes the C library's number format from the user's locale, where the decimal point
    // may be a comma; the settings store numbers as text in the C format.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);
    // The name, not a display name: Qt appends a display name to every window title.
    QApplication::setApplicationName(QStringLiteral("Marzipel"));
    QApplication::setApplicationVersion(QStringLiteral(MARZIPEL_VERSION));
    // Lets the desktop match our windows to the installed desktop entry and its icon.
    QGuiApplication::setDesktopFileName(QString::fromLatin1(kAppId));
    QApplication::setWindowIcon(applicationIcon());

    // One Marzipel per session: a second start shows the first one's settings, which is also
    // how a desktop without a tray reaches them.
    MarzipelBusService busService(systemLog);
    const MarzipelBusService::Claim claim = busService.claim();
    if (claim == MarzipelBusService::Claim::taken)
        return busService.askOwnerToOpenSettings() ? 0 : 1;
    run.reportRunning();

    NotificationCenter center;
    LocalClock clock;
    StdoutConsole console;
    XdgUserDirectories userDirectories;
    const std::optional<std::string> home = homeDirectory();
    LinuxDesktopEntries desktopEntries(xdgDataFolders(home));
    LocalBundleFiles bundleFiles;
    DesktopEntryCatalog catalog(desktopEntries, bundleFiles);
    XdgAutostartLoginItemService loginItems(QCoreApplication::applicationFilePath().toStdString(),
                                            configHomeDirectory(home));
    LinuxApplication application(center, systemLog);
    LinuxBrightnessServiceFactory brightness(systemLog);
    LinuxPowerAssertions powerAssertions;
    LinuxWindowSource windows(chooseWindowSource(currentSessionFacts()), desktopEntries, systemLog,
                              brightness, powerAssertions,
                              claim == MarzipelBusService::Claim::owned ? &busService : nullptr);
    Workspace& workspace = windows.workspace();
    NoUpdater updater;
    QtFilePicker filePicker;
    QtImageLoader imageLoader;
    ProcRunMarker runMarker(runMarkerFolder(), systemLog, qtMainLoop());

    SettingsManager settings(std::make_shared<PlistFilePreferencesStore>(defaultPreferencesPath(),
                                                                         systemLog, qtMainLoop()),
                             console);
    LaunchAtLogin launchAtLogin(loginItems, systemLog);
    const UiServices services{settings, launchAtLogin, application, workspace, updater,
                              catalog,  filePicker,    imageLoader, systemLog, userDirectories,
                              clock,    console,       brightness};
    WelcomeWindowManager welcomeWindow(services);

    MarzipelApp app(MarzipelPlatform{brightness, workspace, powerAssertions, windows.spaceMonitor(),
                                     application, updater, systemLog, clock, console,
                                     userDirectories, settings, center, welcomeWindow, runMarker});
    // Quitting puts everything back and ends the run; a window change read in the same turn of
    // the event loop, before it returns, must not switch it all off again.
    const Subscription quietAtTheEnd = center.subscribe(
        kApplicationWillTerminateNotification, nullptr, [&windows](const Notification&) {
            windows.spaceMonitor().setActiveSpaceChangedHandler({});
        });
    application.setTerminationDecision(
        [&app] { return app.appDelegate().applicationShouldTerminate() == TerminateReply::now; });
    OpenSettingsAccessAction openSettings(application);
    SettingsWindowController settingsWindow(services, openSettings);
    MarzipelTray tray(app.tray(), openSettings, application, systemLog);
    busService.setOpenSettingsHandler(
        [&openSettings, &application] { openSettingsFromTray(openSettings, application); });
    TrayModel& trayModel = app.tray();
    busService.setTrayMenu({[&trayModel] { return trayModel.statusText(); },
                            [&trayModel] { trayModel.about(); },
                            [&trayModel] { trayModel.quit(); }});
    const Subscription statusOnTheBus = trayModel.onStatusChanged(
        [&busService](const std::string& status) { busService.statusChanged(status); });
    // The name was ours before the menu was: a panel that asked in between learns it now.
    busService.statusChanged(trayModel.statusText());
    bool displayBack = false;
    std::unique_ptr<DisplayReturnWatch> displayWatch;
    if (displayGone) {
        systemLog.error(kAppLogSubsystem, kAppLogCategory,
                        "The display is gone: going on without the tray and windows until it "
                        "is back");
        displayWatch = std::make_unique<DisplayReturnWatch>(
            [&displayBack, &application] {
                displayBack = true;
                application.endRun();
            },
            [&application] { application.endRun(); });
    }
    const int status = QApplication::exec();
    busService.setOpenSettingsHandler(nullptr);
    busService.setTrayMenu({});
    return displayBack ? kDisplayIsBackStatus : status;
}
