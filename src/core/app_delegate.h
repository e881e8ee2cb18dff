#pragma once

#include "platform/application.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/updater.h"
#include "platform/user_directories.h"

namespace marzipel {

class SettingsManager;

/// The answer to a request to terminate.
enum class TerminateReply { cancel = 0, now = 1 };

/// Shows the first-run welcome window; the window switches the activation policy when it closes.
class WelcomeWindowPresenter {
public:
    virtual ~WelcomeWindowPresenter() = default;
    virtual void showWelcomeWindow() = 0;
};

/// Answers the platform's questions about the application as a whole: what to do once launched
/// and whether to terminate. Starts the software updater when it is made.
class AppDelegate {
public:
    /// Whether an update found by a scheduled check is announced gently: the program has no Dock
    /// icon to draw attention with.
    static constexpr bool supportsGentleScheduledUpdateReminders = true;

    /// Starts `updater` and becomes the shared delegate.
    AppDelegate(Application& application, Updater& updater, WelcomeWindowPresenter& welcomeWindow,
                const SettingsManager& settings, const UserDirectories& userDirectories,
                const Clock& clock, Console& console);
    /// Clears the shared reference if it is this delegate.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The newest delegate, or null before the first one and after it is gone.
    static AppDelegate* shared();

    /// Set by the tray's Quit just before it asks to terminate; no other request is agreed to.
    bool userWantsToQuit = false;

    /// The updater that the settings window shows.
    Updater& updater() const { return updater_; }

    /// Without the welcome shown yet, shows it; otherwise drops the Dock icon. Then installs the
    /// debug logger if debug logging is on.
    void applicationDidFinishLaunching();
    /// Terminate now only when the user chose Quit in the tray.
    TerminateReply applicationShouldTerminate();

private:
    Application& application_;
    Updater& updater_;
    WelcomeWindowPresenter& welcomeWindow_;
    const SettingsManager& settings_;
    const UserDirectories& userDirectories_;
    const Clock& clock_;
    Console& console_;
};

}  // namespace marzipel
