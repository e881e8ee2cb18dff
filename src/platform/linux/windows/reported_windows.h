#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/xdg/app_identifier.h"
#include "platform/space_monitor.h"
#include "platform/workspace.h"

namespace marzipel {

/// A window as a Wayland compositor, or a script of ours inside it, reports it.
struct ReportedWindow {
    WindowIdentity identity;
    bool fullScreen = false;

    friend bool operator==(const ReportedWindow&, const ReportedWindow&) = default;
};

/// The session's windows as the compositor last reported them, for sessions where a client
/// cannot see other clients' windows. A source (a KWin script, Sway's IPC, a GNOME Shell
/// extension) pushes every report here; nothing is asked for, so nothing here blocks or polls.
/// The active space is "regular" unless the focused window is full screen. Until a source
/// reports, or after it went away, no window has focus. Main thread only.
class ReportedWindows final : public SpaceMonitor, public Workspace {
public:
    /// Names applications by their desktop entries in `entries`, reading processes under
    /// `procRoot`.
    explicit ReportedWindows(const DesktopEntries& entries, std::string procRoot = "/proc");

    /// The focused window, nothing when none has focus. The handler hears only of what changes
    /// the full-screen window (none while the focused one is not full screen): not of repeats,
    /// nor of focus moving between regular windows.
    void reportActive(std::optional<ReportedWindow> window);
    /// The normal windows, in the compositor's order; the active one need not be among them.
    void reportWindows(std::vector<WindowIdentity> windows);
    const std::optional<ReportedWindow>& active() const { return active_; }

    bool isOnActiveSpace() const override { return !active_ || !active_->fullScreen; }
    void setActiveSpaceChangedHandler(std::function<void()> handler) override {
        handler_ = std::move(handler);
    }
    /// Calls `handler` when a report says the focused window has just gone full screen, before
    /// the change handler: what follows will want the desktop's services, which can be asked
    /// meanwhile. A repeat of a full-screen report does not call it.
    void setFullScreenLikelyHandler(std::function<void()> handler) {
        fullScreenLikely_ = std::move(handler);
    }
    /// A Linux program has no bundle: false.
    bool mainBundleIsAgent() const override { return false; }
    /// A Linux program has no bundle: nothing.
    std::optional<std::string> mainBundleName() const override { return std::nullopt; }

    /// The process of the focused window; nothing when its process is not known.
    std::optional<RunningApplication> frontmostApplication() const override;
    /// One per process, in the order of its first window; every one is regular.
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(std::int32_t processId) const override;
    /// Hands a file URL to Qt's desktop services; needs the Qt GUI application object.
    bool openFolder(const std::string& folder) override;

private:
    const WindowIdentity* windowOf(std::int32_t processId) const;

    AppIdentifier identifier_;
    std::optional<ReportedWindow> active_;
    std::vector<WindowIdentity> windows_;
    std::function<void()> handler_;
    std::function<void()> fullScreenLikely_;
};

}  // namespace marzipel
