#include "platform/linux/windows/x11/x11_space_monitor.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace marzipel {

namespace {

constexpr std::string_view kNotNoticed = ": full-screen applications will not be noticed.";

std::string displayName(const std::string& display) {
    if (!display.empty()) return display;
    const char* fromEnvironment = std::getenv("DISPLAY");
    return fromEnvironment ? fromEnvironment : "(DISPLAY is not set)";
}

}  // namespace

X11SpaceMonitor::X11SpaceMonitor(SystemLog& log, const std::string& display)
    : log_(log), events_(display), queries_(display) {
    if (!events_.isOpen() || !queries_.isOpen()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Cannot open the X display " + displayName(display) + std::string(kNotNoticed));
        return;
    }
    events_.selectEvents(events_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    watchActiveWindow();
    fullScreenAsLastTold_ = fullScreenWindow();
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(events_.get()),
                                                  QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    readEvents();
}

X11SpaceMonitor::~X11SpaceMonitor() = default;

bool X11SpaceMonitor::isOnActiveSpace() const {
    const bool fullScreen = fullScreenWindow() != XCB_WINDOW_NONE;
    if (fullScreen && fullScreenLikely_) fullScreenLikely_();
    return !fullScreen;
}

xcb_window_t X11SpaceMonitor::fullScreenWindow() const {
    // The window watched for state changes is nearly always still the active one, so its state
    // is asked for together with the active window; only when another has come up since is its
    // state asked for again.
    const auto& atoms = queries_.ewmh();
    const std::array<PropertyRequest, 2> requests{{
        {queries_.root(), atoms._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW},
        {watched_, atoms._NET_WM_STATE, XCB_ATOM_ATOM},
    }};
    const auto replies = queries_.properties(requests);
    const auto activeItems = X11Connection::itemsOf(replies[0]);
    const xcb_window_t active =
        activeItems.empty() ? xcb_window_t{XCB_WINDOW_NONE} : activeItems[0];
    const auto states = active == watched_ || active == XCB_WINDOW_NONE
                            ? X11Connection::itemsOf(replies[1])
                            : queries_.items(active, atoms._NET_WM_STATE, XCB_ATOM_ATOM);
    const bool fullScreen =
        active != XCB_WINDOW_NONE && std::ranges::count(states, atoms._NET_WM_STATE_FULLSCREEN) > 0;
    queries_.dropQueuedEvents();
    return fullScreen ? active : xcb_window_t{XCB_WINDOW_NONE};
}

void X11SpaceMonitor::setActiveSpaceChangedHandler(std::function<void()> handler) {
    handler_ = std::move(handler);
}

void X11SpaceMonitor::readEvents() {
    const auto& atoms = events_.ewmh();
    bool changing = false;
    while (XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(events_.get())}) {
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) continue;
        const auto& change = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        const bool onRoot =
            change.window == events_.root() &&
            (change.atom == atoms._NET_ACTIVE_WINDOW || change.atom == atoms._NET_CURRENT_DESKTOP);
        const bool onActive = change.window == watched_ && change.atom == atoms._NET_WM_STATE;
        if (!onRoot && !onActive) continue;
        if (change.atom == atoms._NET_ACTIVE_WINDOW) watchActiveWindow();
        if (changeArriving_) changeArriving_(watched_);
        if (onActive && fullScreenLikely_) fullScreenLikely_();
        changing = true;
    }
    xcb_flush(events_.get());
    // One change sets several properties, some of them again unchanged, and openbox moves focus
    // through no window at all: each decision must be made once, for a change that matters.
    if (changing && events_.isOpen()) {
        const xcb_window_t now = fullScreenWindow();
        if (now != fullScreenAsLastTold_) {
            fullScreenAsLastTold_ = now;
            if (handler_) {
                // The handler may replace itself.
                const auto handler = handler_;
                handler();
            }
        }
    }
    if (!events_.isOpen() && notifier_->isEnabled()) {
        // A broken connection stays readable; without this the loop would spin on it.
        notifier_->setEnabled(false);
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Lost the connection to the X display" + std::string(kNotNoticed));
    }
}

void X11SpaceMonitor::watchActiveWindow() {
    const xcb_window_t active = events_.activeWindow();
    // The old window may be gone already; the error that brings is skipped with other events.
    if (watched_ != XCB_WINDOW_NONE && watched_ != active)
        events_.selectEvents(watched_, XCB_EVENT_MASK_NO_EVENT);
    // Selected again when the id is the one watched: X hands the ids of a client that left to
    // the next one, so the id may now name a new window that was never asked for its changes.
    if (active != XCB_WINDOW_NONE) events_.selectEvents(active, XCB_EVENT_MASK_PROPERTY_CHANGE);
    watched_ = active;
    // The handler's answer comes from the other connection: it must not see a state change
    // that this one has not been asked to report yet.
    events_.sync();
}

}  // namespace marzipel
