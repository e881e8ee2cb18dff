#include "core/app_delegate.h"

#include "diagnostics/debug_log.h"
#include "diagnostics/file_logger.h"
#include "settings/settings_manager.h"

namespace marzipel {

namespace {

AppDelegate* sharedDelegate = nullptr;

}  // namespace

AppDelegate::AppDelegate(Application& application, Updater& updater,
                         WelcomeWindowPresenter& welcomeWindow, const SettingsManager& settings,
                         const UserDirectories& userDirectories, const Clock& clock,
                         Console& console)
    : application_(application),
      updater_(updater),
      welcomeWindow_(welcomeWindow),
      settings_(settings),
      userDirectories_(userDirectories),
      clock_(clock),
      console_(console) {
    updater_.start(supportsGentleScheduledUpdateReminders);
    sharedDelegate = this;
}

AppDelegate::~AppDelegate() {
    if (sharedDelegate == this) sharedDelegate = nullptr;
}

AppDelegate* AppDelegate::shared() { return sharedDelegate; }

void AppDelegate::applicationDidFinishLaunching() {
    if (settings_.welcomeScreenShown().get()) {
        application_.setActivationPolicy(ActivationPolicy::accessory);
    } else {
        welcomeWindow_.showWelcomeWindow();
    }
    if (settings_.debugLoggingEnabled().get()) {
        FileLogger::setShared(FileLogger::create(userDirectories_, clock_, console_));
    }
}

TerminateReply AppDelegate::applicationShouldTerminate() {
    if (userWantsToQuit) return TerminateReply::now;
    // Only a quit chosen in the tray may end the program, so that the restore on will-terminate
    // runs for exactly that quit.
    debugLog(settings_, "App termination not requested by user, not terminating.");
    return TerminateReply::cancel;
}

}  // namespace marzipel
