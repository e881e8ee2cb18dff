#include "x_session.h"

#include <algorithm>
#include <stdexcept>

namespace marzipel {
namespace {

void expect(const std::function<bool()>& condition, const std::string& what) {
    if (!waitUntil(condition)) throw std::runtime_error("timed out waiting until " + what);
}

/// Sends the window manager a client message about `window`.
void askWindowManager(const X11Connection& x, xcb_window_t window, xcb_atom_t type,
                      std::vector<std::uint32_t> data) {
    data.resize(5);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(x.get(), 0, x.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(x.get());
}

}  // namespace

XClient::XClient(const std::string& display) : x_(display) {
    if (!x_.isOpen()) throw std::runtime_error("cannot connect to " + display);
}

xcb_window_t XClient::createWindow(const TestWindow& shape) {
    xcb_connection_t* c = x_.get();
    const auto& atoms = x_.ewmh();
    const xcb_window_t window = xcb_generate_id(c);
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, x_.root(), 0, 0, 200, 150, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto set = [&](xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                         std::size_t length, const void* data) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property, type, format,
                            static_cast<std::uint32_t>(length), data);
    };
    const std::string wmClass = shape.instance + '\0' + shape.className + '\0';
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, wmClass.size(), wmClass.data());
    if (shape.processId) set(atoms._NET_WM_PID, XCB_ATOM_CARDINAL, 32, 1, &*shape.processId);
    if (shape.gtkApplicationId)
        set(x_.gtkApplicationIdAtom(), atoms.UTF8_STRING, 8, shape.gtkApplicationId->size(),
            shape.gtkApplicationId->data());
    if (shape.skipTaskbar)
        set(atoms._NET_WM_STATE, XCB_ATOM_ATOM, 32, 1, &atoms._NET_WM_STATE_SKIP_TASKBAR);
    if (shape.utility)
        set(atoms._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, 32, 1, &atoms._NET_WM_WINDOW_TYPE_UTILITY);
    xcb_map_window(c, window);
    xcb_flush(c);
    expect(
        [&] {
            return std::ranges::count(x_.items(x_.root(), atoms._NET_CLIENT_LIST, XCB_ATOM_WINDOW),
                                      window) > 0;
        },
        "the window manager lists window " + std::to_string(window));
    return window;
}

// Source indication 2: a pager, whose requests the window manager does not second-guess.
void XClient::activate(xcb_window_t window) {
    askWindowManager(x_, window, x_.ewmh()._NET_ACTIVE_WINDOW, {2, XCB_CURRENT_TIME});
    expect([&] { return x_.activeWindow() == window; },
           "window " + std::to_string(window) + " is active");
}

void XClient::setFullScreen(xcb_window_t window, bool fullScreen) {
    const auto& atoms = x_.ewmh();
    askWindowManager(x_, window, atoms._NET_WM_STATE,
                     {fullScreen ? 1u : 0u, atoms._NET_WM_STATE_FULLSCREEN, 0, 2});
    expect([&] { return x_.hasState(window, atoms._NET_WM_STATE_FULLSCREEN) == fullScreen; },
           "window " + std::to_string(window) + " has full screen " + (fullScreen ? "on" : "off"));
}

void XClient::switchToDesktop(std::uint32_t desktop) {
    const auto& atoms = x_.ewmh();
    askWindowManager(x_, x_.root(), atoms._NET_CURRENT_DESKTOP, {desktop, XCB_CURRENT_TIME});
    expect(
        [&] {
            const auto current = x_.items(x_.root(), atoms._NET_CURRENT_DESKTOP, XCB_ATOM_CARDINAL);
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
    const xcb_window_t probe = xcb_generate_id(x.get());
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, probe, x.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    bool ready = false;
    for (int attempt = 0; attempt < 50 && !ready; ++attempt) {
        askWindowManager(x, probe, x.ewmh()._NET_REQUEST_FRAME_EXTENTS, {});
        ready = waitUntil(
            [&] { return !x.items(probe, x.ewmh()._NET_FRAME_EXTENTS, XCB_ATOM_CARDINAL).empty(); },
            200ms);
    }
    xcb_destroy_window(x.get(), probe);
    xcb_flush(x.get());
    if (!ready) throw std::runtime_error("openbox did not start");
}

}  // namespace marzipel
