#include "x_session.h"

#include <algorithm>
#include <stdexcept>

namespace marzipel {
namespace {

void expect(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition)) throw std::runtime_error("timed out waiting until " + what);
}

// Source indication 2: a pager, whose requests the window manager does not second-guess.
constexpr auto kPager = XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER;

}  // namespace

XClient::XClient(const std::string& display) : x_(display), ewmh_(x_.ewmh()) {
    if (!x_.isOpen()) throw std::runtime_error("cannot connect to " + display);
}

xcb_window_t XClient::createWindow(const TestWindow& shape) {
    xcb_connection_t* c = x_.get();
    const xcb_window_t window = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, x_.root(), 0, 0, 200, 150, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const std::string wmClass = shape.instance + '\0' + shape.className + '\0';
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        wmClass.size(), wmClass.data());
    if (shape.processId) xcb_ewmh_set_wm_pid(&ewmh_, window, *shape.processId);
    if (shape.gtkApplicationId)
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, x_.gtkApplicationIdAtom(),
                            ewmh_.UTF8_STRING, 8, shape.gtkApplicationId->size(),
                            shape.gtkApplicationId->data());
    if (shape.skipTaskbar)
        xcb_ewmh_set_wm_state(&ewmh_, window, 1, &ewmh_._NET_WM_STATE_SKIP_TASKBAR);
    if (shape.utility)
        xcb_ewmh_set_wm_window_type(&ewmh_, window, 1, &ewmh_._NET_WM_WINDOW_TYPE_UTILITY);
    xcb_map_window(c, window);
    xcb_flush(c);
    expect(
        [&] {
            return std::ranges::count(x_.items(x_.root(), ewmh_._NET_CLIENT_LIST, XCB_ATOM_WINDOW),
                                      window) > 0;
        },
        "the window manager lists window " + std::to_string(window));
    return window;
}

void XClient::activate(xcb_window_t window) {
    xcb_ewmh_request_change_active_window(&ewmh_, 0, window, kPager, XCB_CURRENT_TIME, 0);
    xcb_flush(x_.get());
    expect([&] { return x_.activeWindow() == window; },
           "window " + std::to_string(window) + " is active");
}

void XClient::setFullScreen(xcb_window_t window, bool fullScreen) {
    xcb_ewmh_request_change_wm_state(&ewmh_, 0, window,
                                     fullScreen ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
                                     ewmh_._NET_WM_STATE_FULLSCREEN, 0, kPager);
    xcb_flush(x_.get());
    expect([&] { return x_.hasState(window, ewmh_._NET_WM_STATE_FULLSCREEN) == fullScreen; },
           "window " + std::to_string(window) + " has full screen " + (fullScreen ? "on" : "off"));
}

void XClient::switchToDesktop(std::uint32_t desktop) {
    xcb_ewmh_request_change_current_desktop(&ewmh_, 0, desktop, XCB_CURRENT_TIME);
    xcb_flush(x_.get());
    expect(
        [&] {
            const auto current = x_.items(x_.root(), ewmh_._NET_CURRENT_DESKTOP, XCB_ATOM_CARDINAL);
            return !current.empty() && current.front() == desktop;
        },
        "desktop " + std::to_string(desktop) + " is shown");
}

XSession::XSession() {
    display_ = ":" + startAndReadLine(server_, {XVFB_PROGRAM, "-displayfd", "1", "-screen", "0",
                                                "1024x768x24", "-nolisten", "tcp"});
    client_ = std::make_unique<XClient>(display_);
    const std::string home = home_.path().string();
    windowManager_ =
        Child({OPENBOX_PROGRAM, "--sm-disable"},
              {"DISPLAY=" + display_, "HOME=" + home, "XDG_CONFIG_HOME=" + home + "/config",
               "XDG_CACHE_HOME=" + home + "/cache", "XDG_DATA_HOME=" + home + "/data"});
    // Events that reach openbox while it is still starting up wait in its queue until the
    // next one arrives. So ask it something until it answers: from then on it is listening.
    const auto& x = client_->x();
    xcb_ewmh_connection_t ewmh = x.ewmh();
    const xcb_window_t probe = xcb_generate_id(x.get());
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, probe, x.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    bool ready = false;
    for (int attempt = 0; attempt < 50 && !ready; ++attempt) {
        xcb_ewmh_request_frame_extents(&ewmh, 0, probe);
        xcb_flush(x.get());
        ready = waitUntil(
            [&] { return !x.items(probe, x.ewmh()._NET_FRAME_EXTENTS, XCB_ATOM_CARDINAL).empty(); },
            200ms);
    }
    xcb_destroy_window(x.get(), probe);
    xcb_flush(x.get());
    if (!ready) throw std::runtime_error("openbox did not start");
}

}  // namespace marzipel
