#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/windows/x11/x11_connection.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace marzipel {

/// One window of the test's own.
struct TestWindow {
    std::optional<std::uint32_t> processId = std::nullopt;
    std::string instance = "testwindow";
    std::string className = "TestWindow";
    bool skipTaskbar = false;
    bool utility = false;
    std::optional<std::string> gtkApplicationId = std::nullopt;
};

/// A client of the test's X server that makes windows and asks the window manager for focus
/// and full screen as a pager would, waiting for each to take effect. Failing waits throw.
class XClient {
public:
    explicit XClient(const std::string& display);

    const X11Connection& x() const { return x_; }
    /// Maps a window and waits until the window manager lists it.
    xcb_window_t createWindow(const TestWindow& window);
    void activate(xcb_window_t window);
    void setFullScreen(xcb_window_t window, bool fullScreen);
    void switchToDesktop(std::uint32_t desktop);

private:
    X11Connection x_;
    // The library's requests take it writable.
    xcb_ewmh_connection_t ewmh_;
};

/// A private X server (Xvfb on a free display) managed by openbox, with a client connected.
class XSession {
public:
    /// Throws when the server or the window manager is not ready within a deadline.
    XSession();

    const std::string& display() const { return display_; }
    XClient& client() { return *client_; }
    /// Ends the X server, as when the session goes away under the program.
    void stopServer() { server_.stop(); }

private:
    TempFolder home_;
    Child server_;
    Child windowManager_;
    std::string display_;
    std::unique_ptr<XClient> client_;
};

}  // namespace marzipel
