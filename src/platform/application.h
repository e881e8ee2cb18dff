#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/workspace.h"

namespace marzipel {

/// Posted on the program's notification centre by the platform, with the Application as
/// sender, once launching has finished.
inline constexpr char kApplicationDidFinishLaunchingNotification[] =
    "NSApplicationDidFinishLaunchingNotification";
/// Posted on the program's notification centre, with the Application as sender, when a
/// termination has been agreed to and just before the process ends.
inline constexpr char kApplicationWillTerminateNotification[] =
    "NSApplicationWillTerminateNotification";

/// Major, minor and patch version of the running operating system.
struct OperatingSystemVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    friend auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

/// The program's own application as the platform runs it. Main thread only.
class Application {
public:
    virtual ~Application() = default;

    /// Accessory: no Dock icon and no main menu.
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Brings the program to the front, ignoring other applications.
    virtual void activate() = 0;
    /// Shows the standard About panel with the bundle's own name, version and icon.
    virtual void showAboutPanel() = 0;
    /// The version of the running operating system.
    virtual OperatingSystemVersion operatingSystemVersion() const = 0;

    /// Asks the application to terminate. The platform hands the request to the program's
    /// termination decision (AppDelegate::applicationShouldTerminate, or
    /// MarzipelApp::requestTermination where the platform has no delegate of its own); when the
    /// answer is to terminate, kApplicationWillTerminateNotification is posted and the run
    /// ends, otherwise nothing happens. May return before the run has ended.
    virtual void terminate() = 0;

    /// Makes the program's application delegate answer `action` (for example
    /// "showSettingsWindow:") by calling `handler`; replaces an earlier handler of that name.
    virtual void installDelegateAction(std::string action, std::function<void()> handler) = 0;
    /// Whether the application has a delegate and it answers `action`.
    virtual bool delegateRespondsTo(std::string_view action) const = 0;
    /// Sends `action` to the delegate, with no sender. Does nothing when it does not answer it.
    virtual void sendActionToDelegate(std::string_view action) = 0;
    /// Sends `action` with no target and no sender along the responder chain, at whose end
    /// the delegate stands. False when nothing along the chain handled it.
    virtual bool sendAction(std::string_view action) = 0;
};

}  // namespace marzipel
