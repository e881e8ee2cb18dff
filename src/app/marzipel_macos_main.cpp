// Marzipel on macOS: Qt's application and windows over the macOS adapters.

#include <QApplication>
#include <QEvent>
#include <clocale>
#include <memory>

#include "core/marzipel_app.h"
#include "detection/app_catalog.h"
#include "platform/common/stdout_console.h"
#include "platform/local/local_bundle_files.h"
#include "platform/macos/mac_application.h"
#include "platform/macos/mac_brightness_service.h"
#include "platform/macos/mac_clock.h"
#include "platform/macos/mac_login_item_service.h"
#include "platform/macos/mac_power_assertions.h"
#include "platform/macos/mac_preferences_store.h"
#include "platform/macos/mac_run_marker.h"
#include "platform/macos/mac_space_monitor.h"
#include "platform/macos/mac_system_log.h"
#include "platform/macos/mac_updater.h"
#include "platform/macos/mac_user_directories.h"
#include "platform/macos/mac_workspace.h"
#include "platform/qt/qt_file_picker.h"
#include "platform/qt/qt_image_loader.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"
#include "ui/models/settings_access.h"
#include "ui/settings_window.h"
#include "ui/tray.h"
#include "ui/ui_services.h"
#include "ui/welcome_window.h"

namespace marzipel {
namespace {

/// Qt turns every request to quit (Command-Q, the Dock, logging out, NSApp's terminate:) into
/// one Quit event on the application; this filter lets it through only when the delegate agrees.
class TerminationFilter final : public QObject {
public:
    explicit TerminationFilter(AppDelegate& delegate) : delegate_(delegate) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != QCoreApplication::instance() || event->type() != QEvent::Quit) return false;
        if (delegate_.applicationShouldTerminate() == TerminateReply::now) return false;
        event->ignore();
        return true;
    }

private:
    AppDelegate& delegate_;
};

}  // namespace
}  // namespace marzipel

int main(int argc, char* argv[]) {
    using namespace marzipel;
    QApplication qtApplication(argc, argv);
    // Qt takes the C library's number format from the user's locale, where the decimal point
    // may be a comma; the settings store numbers as text in the C format.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setQuitOnLastWindowClosed(false);

    // Made after Qt's application object, which owns NSApp and its delegate.
    NotificationCenter center;
    MacApplication application(center);
    MacSpaceMonitor spaceMonitor;
    MacBrightnessServiceFactory brightness;
    MacWorkspace workspace;
    MacPowerAssertions powerAssertions;
    MacUpdater updater([] {
        // Sparkle quits the program to install an update; that quit must not be refused.
        if (AppDelegate* delegate = AppDelegate::shared()) delegate->userWantsToQuit = true;
    });
    MacSystemLog systemLog;
    MacClock clock;
    StdoutConsole console;
    MacUserDirectories userDirectories;
    MacLoginItemService loginItems;
    LocalBundleFiles bundleFiles;
    BundleCatalog catalog(bundleFiles);
    QtFilePicker filePicker;
    QtImageLoader imageLoader;
    MacRunMarker runMarker(systemLog);

    SettingsManager settings(std::make_shared<MacPreferencesStore>(), console);
    LaunchAtLogin launchAtLogin(loginItems, systemLog);
    const UiServices services{settings, launchAtLogin, application, workspace, updater,
                              catalog,  filePicker,    imageLoader, systemLog, userDirectories,
                              clock,    console,       brightness};
    WelcomeWindowManager welcomeWindow(services);

    MarzipelApp app(MarzipelPlatform{brightness, workspace, powerAssertions, spaceMonitor,
                                     application, updater, systemLog, clock, console,
                                     userDirectories, settings, center, welcomeWindow, runMarker});
    OpenSettingsAccessAction openSettings(application);
    SettingsWindowController settingsWindow(services, openSettings);
    MarzipelTray tray(app.tray(), openSettings, application, systemLog);

    TerminationFilter terminationFilter(app.appDelegate());
    qtApplication.installEventFilter(&terminationFilter);
    QObject::connect(&qtApplication, &QCoreApplication::aboutToQuit,
                     [&] { center.post(kApplicationWillTerminateNotification, &application); });
    return QApplication::exec();
}
