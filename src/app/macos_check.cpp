// marzipel-macos-check: the program's objects on the macOS platform, without windows or run loop.
// Built to prove that the core and the macOS adapters link; run on a Mac it reports what the
// program would start with.

#include <iostream>
#include <memory>

#include "core/marzipel_app.h"
#include "platform/common/stdout_console.h"
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
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

class ReportedWelcomeWindow final : public WelcomeWindowPresenter {
public:
    void showWelcomeWindow() override { std::cout << "welcome window: would be shown\n"; }
};

}  // namespace
}  // namespace marzipel

int main() {
    using namespace marzipel;
    NotificationCenter center;
    MacApplication application(center);
    MacSpaceMonitor spaceMonitor;
    MacBrightnessServiceFactory brightness;
    MacWorkspace workspace;
    MacPowerAssertions powerAssertions;
    MacUpdater updater([] {
        if (AppDelegate* delegate = AppDelegate::shared()) delegate->userWantsToQuit = true;
    });
    MacSystemLog systemLog;
    MacClock clock;
    StdoutConsole console;
    MacUserDirectories userDirectories;
    MacLoginItemService loginItems;
    SettingsManager settings(std::make_shared<MacPreferencesStore>(), console);
    LaunchAtLogin launchAtLogin(loginItems, systemLog);
    ReportedWelcomeWindow welcome;
    MacRunMarker runMarker(systemLog);

    MarzipelApp app(MarzipelPlatform{brightness, workspace, powerAssertions, spaceMonitor,
                                     application, updater, systemLog, clock, console,
                                     userDirectories, settings, center, welcome, runMarker});

    const OperatingSystemVersion version = application.operatingSystemVersion();
    std::cout << "macOS " << version.major << '.' << version.minor << '.' << version.patch << '\n'
              << "tray: " << app.tray().statusText() << '\n'
              << "space: " << (spaceMonitor.isOnActiveSpace() ? "regular" : "full screen") << '\n'
              << "launch at login: " << (launchAtLogin.isEnabled() ? "on" : "off") << '\n'
              << "updater: " << (updater.isAvailable() ? "available" : "not configured") << '\n';
    return 0;
}
