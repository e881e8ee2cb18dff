#include "platform/linux/windows/x11/x11_connection.h"

#include <algorithm>

namespace marzipel {

namespace {

// Enough for the longest client list or state list a desktop has, in 32-bit units.
constexpr std::uint32_t kMaxPropertyLength = 1u << 16;

xcb_get_property_cookie_t ask(xcb_connection_t* connection, const PropertyRequest& request) {
    return xcb_get_property(connection, 0, request.window, request.name, request.type, 0,
                            kMaxPropertyLength);
}

PropertyReply answer(xcb_connection_t* connection, xcb_get_property_cookie_t cookie,
                     xcb_atom_t type) {
    xcb_generic_error_t* error = nullptr;
    PropertyReply reply(xcb_get_property_reply(connection, cookie, &error));
    std::free(error);
    if (reply && reply->type != type) reply.reset();
    return reply;
}

}  // namespace

X11Connection::X11Connection(const std::string& display) {
    int screen = 0;
    connection_ = xcb_connect(display.empty() ? nullptr : display.c_str(), &screen);
    if (xcb_connection_has_error(connection_)) return;

    const char gtkName[] = "_GTK_APPLICATION_ID";
    const auto gtkCookie = xcb_intern_atom(connection_, 0, sizeof gtkName - 1, gtkName);
    xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(connection_, &ewmh_);
    ewmhReady_ = cookies && xcb_ewmh_init_atoms_replies(&ewmh_, cookies, nullptr);
    xcb_generic_error_t* error = nullptr;
    XcbPtr<xcb_intern_atom_reply_t> gtkReply(xcb_intern_atom_reply(connection_, gtkCookie, &error));
    std::free(error);
    if (gtkReply) gtkApplicationId_ = gtkReply->atom;
    if (ewmhReady_ && screen >= 0 && screen < ewmh_.nb_screens) root_ = ewmh_.screens[screen]->root;
}

X11Connection::~X11Connection() {
    if (ewmhReady_) xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

bool X11Connection::isOpen() const {
    return root_ != XCB_WINDOW_NONE && xcb_connection_has_error(connection_) == 0;
}

std::vector<PropertyReply> X11Connection::properties(
    std::span<const PropertyRequest> requests) const {
    return answers(send(requests));
}

SentRequests X11Connection::send(std::span<const PropertyRequest> requests) const {
    SentRequests sent{{requests.begin(), requests.end()}, {}};
    if (!isOpen()) return sent;
    sent.cookies.reserve(requests.size());
    for (const PropertyRequest& request : requests)
        sent.cookies.push_back(ask(connection_, request));
    xcb_flush(connection_);
    return sent;
}

std::vector<PropertyReply> X11Connection::answers(const SentRequests& sent) const {
    std::vector<PropertyReply> replies(sent.requests.size());
    for (std::size_t i = 0; i < sent.cookies.size(); ++i)
        replies[i] = answer(connection_, sent.cookies[i], sent.requests[i].type);
    return replies;
}

void X11Connection::forget(const SentRequests& sent) const {
    for (const auto cookie : sent.cookies) xcb_discard_reply(connection_, cookie.sequence);
}

std::vector<std::uint32_t> X11Connection::itemsOf(const PropertyReply& reply) {
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

std::optional<std::string> X11Connection::bytesOf(const PropertyReply& reply) {
    if (!reply || reply->format != 8) return std::nullopt;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::uint32_t> X11Connection::items(xcb_window_t window, xcb_atom_t name,
                                                xcb_atom_t type) const {
    if (!isOpen()) return {};
    const PropertyRequest request{window, name, type};
    return itemsOf(answer(connection_, ask(connection_, request), type));
}

xcb_window_t X11Connection::activeWindow() const {
    const auto active = items(root_, ewmh_._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW);
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
}

bool X11Connection::hasState(xcb_window_t window, xcb_atom_t state) const {
    return std::ranges::count(items(window, ewmh_._NET_WM_STATE, XCB_ATOM_ATOM), state) > 0;
}

void X11Connection::selectEvents(xcb_window_t window, std::uint32_t mask) const {
    if (isOpen()) xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

void X11Connection::sync() const {
    if (!isOpen()) return;
    xcb_generic_error_t* error = nullptr;
    XcbPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), &error));
    std::free(error);
}

void X11Connection::dropQueuedEvents() const {
    while (XcbPtr<xcb_generic_event_t>(xcb_poll_for_queued_event(connection_))) {
    }
}

}  // namespace marzipel
