#include "platform/linux/x11_space_monitor.h"

#include <QSocketNotifier>

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
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(events_.get()),
                                                  QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    readEvents();
}

X11SpaceMonitor::~X11SpaceMonitor() = default;

bool X11SpaceMonitor::isOnActiveSpace() const {
    const xcb_window_t active = queries_.activeWindow();
    const bool fullScreen = active != XCB_WINDOW_NONE &&
                            queries_.hasState(active, queries_.ewmh()._NET_WM_STATE_FULLSCREEN);
    queries_.dropQueuedEvents();
    return !fullScreen;
}

void X11SpaceMonitor::setActiveSpaceChangedHandler(std::function<void()> handler) {
    handler_ = std::move(handler);
}

void X11SpaceMonitor::readEvents() {
    const auto& atoms = events_.ewmh();
    while (XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(events_.get())}) {
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) continue;
        const auto& change = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        const bool onRoot =
            change.window == events_.root() &&
            (change.atom == atoms._NET_ACTIVE_WINDOW || change.atom == atoms._NET_CURRENT_DESKTOP);
        const bool onActive = change.window == watched_ && change.atom == atoms._NET_WM_STATE;
        if (!onRoot && !onActive) continue;
        if (change.atom == atoms._NET_ACTIVE_WINDOW) watchActiveWindow();
        if (handler_) {
            // The handler may replace itself.
            const auto handler = handler_;
            handler();
        }
    }
    xcb_flush(events_.get());
    if (!events_.isOpen() && notifier_->isEnabled()) {
        // A broken connection stays readable; without this the loop would spin on it.
        notifier_->setEnabled(false);
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Lost the connection to the X display" + std::string(kNotNoticed));
    }
}

void X11SpaceMonitor::watchActiveWindow() {
    const xcb_window_t active = events_.activeWindow();
    if (active == watched_) return;
    // The old window may be gone already; the error that brings is skipped with other events.
    if (watched_ != XCB_WINDOW_NONE) events_.selectEvents(watched_, XCB_EVENT_MASK_NO_EVENT);
    if (active != XCB_WINDOW_NONE) events_.selectEvents(active, XCB_EVENT_MASK_PROPERTY_CHANGE);
    watched_ = active;
    // The handler's answer comes from the other connection: it must not see a state change
    // that this one has not been asked to report yet.
    events_.sync();
}

}  // namespace marzipel
