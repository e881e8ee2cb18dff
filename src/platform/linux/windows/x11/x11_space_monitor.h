#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/windows/x11/x11_connection.h"
#include "platform/space_monitor.h"
#include "platform/system_log.h"

class QSocketNotifier;

namespace marzipel {

/// The full-screen state of the X11 session: the active window is "on another space" while
/// its _NET_WM_STATE holds _NET_WM_STATE_FULLSCREEN. Woken by the Qt event loop for property
/// changes of the root (_NET_ACTIVE_WINDOW, _NET_CURRENT_DESKTOP) and of the active window
/// (_NET_WM_STATE); there is no timer. The change handler hears only of what changes the
/// answer or, while it is false, the full-screen window: not of focus moving between regular
/// windows, nor of properties set again unchanged. Made after the Qt application object; main
/// thread only.
class X11SpaceMonitor final : public SpaceMonitor {
public:
    /// Connects to `display` ($DISPLAY when empty). When that fails, or the server goes away
    /// later, the monitor writes one line to `log`, stays silent and answers true.
    explicit X11SpaceMonitor(SystemLog& log, const std::string& display = {});
    ~X11SpaceMonitor() override;
    X11SpaceMonitor(const X11SpaceMonitor&) = delete;
    X11SpaceMonitor& operator=(const X11SpaceMonitor&) = delete;

    /// True also when there is no active window or no display.
    bool isOnActiveSpace() const override;
    void setActiveSpaceChangedHandler(std::function<void()> handler) override;
    /// Calls `handler` with the window most likely active as soon as a change arrives, before
    /// the change handler: other X clients of the program can put their questions meanwhile.
    void setChangeArrivingHandler(std::function<void(std::uint32_t likelyActiveWindow)> handler) {
        changeArriving_ = std::move(handler);
    }
    /// Calls `handler` when the active window may have gone full screen: as soon as a change of
    /// its state arrives, and when `isOnActiveSpace` finds it full screen, before it answers.
    /// What follows will want the desktop's services, which can be asked meanwhile.
    void setFullScreenLikelyHandler(std::function<void()> handler) {
        fullScreenLikely_ = std::move(handler);
    }
    /// A Linux program has no bundle: false.
    bool mainBundleIsAgent() const override { return false; }
    /// A Linux program has no bundle: nothing.
    std::optional<std::string> mainBundleName() const override { return std::nullopt; }

private:
    /// The active window if it is full screen, else none.
    xcb_window_t fullScreenWindow() const;
    void readEvents();
    void watchActiveWindow();

    SystemLog& log_;
    // Replies awaited on a connection pull the events behind them into xcb's own queue, where
    // the socket notifier cannot see them; so answers to outside questions come from a
    // connection of their own, and the event connection waits only while reading events.
    X11Connection events_;
    X11Connection queries_;
    xcb_window_t watched_ = XCB_WINDOW_NONE;
    xcb_window_t fullScreenAsLastTold_ = XCB_WINDOW_NONE;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::function<void()> handler_;
    std::function<void()> fullScreenLikely_;
    std::function<void(std::uint32_t)> changeArriving_;
};

}  // namespace marzipel
