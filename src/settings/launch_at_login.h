#pragma once

#include <functional>
#include <string>

#include "base/signal.h"
#include "platform/login_item_service.h"
#include "platform/system_log.h"

namespace marzipel {

/// Whether the application starts when the user logs in. It keeps nothing of its own: every read
/// asks the login-item service. One instance is made at start-up and shared by every view that
/// shows the switch, which listens for its will-change announcements. Main thread.
class LaunchAtLogin {
public:
    /// Both must outlive this object.
    LaunchAtLogin(LoginItemService& service, SystemLog& systemLog);
    LaunchAtLogin(const LaunchAtLogin&) = delete;
    LaunchAtLogin& operator=(const LaunchAtLogin&) = delete;

    /// True exactly when the service reports the item enabled.
    bool isEnabled() const;
    /// Announces the change, then registers or unregisters. Turning it on while on registers
    /// afresh. A failure is logged and not raised; the next read tells the truth.
    void setEnabled(bool enabled);

    /// Calls `listener` at the start of every write, so that views re-read the switch.
    [[nodiscard]] Subscription onWillChange(std::function<void()> listener) {
        return willChange_.connect(std::move(listener));
    }

private:
    void logFailure(const char* verb, const std::string& errorText);

    LoginItemService& service_;
    SystemLog& systemLog_;
    Signal<> willChange_;
};

/// The model of the launch-at-login switch shown in a view: its label and the shared switch.
class LaunchAtLoginToggle {
public:
    /// `launchAtLogin` is the shared switch and must outlive the toggle.
    LaunchAtLoginToggle(std::string label, LaunchAtLogin& launchAtLogin)
        : label_(std::move(label)), launchAtLogin_(launchAtLogin) {}

    /// The text shown beside the switch.
    const std::string& label() const { return label_; }
    /// The switch as the login-item service reports it now.
    bool isOn() const { return launchAtLogin_.isEnabled(); }
    /// Writes the switch; the shown state comes back from the service on the next read.
    void setOn(bool on) { launchAtLogin_.setEnabled(on); }
    /// The shared switch, for listening to its announcements.
    LaunchAtLogin& observable() const { return launchAtLogin_; }

private:
    std::string label_;
    LaunchAtLogin& launchAtLogin_;
};

}  // namespace marzipel
