#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marzipel {

/// Frees what xcb hands over (replies, errors, events) with free().
struct XcbFree {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using XcbPtr = std::unique_ptr<T, XcbFree>;

/// A property asked for: `window`'s `name`, accepted only with type `type`.
struct PropertyRequest {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_atom_t name = XCB_ATOM_NONE;
    xcb_atom_t type = XCB_ATOM_NONE;
};

using PropertyReply = XcbPtr<xcb_get_property_reply_t>;

/// Property requests sent and not yet answered.
struct SentRequests {
    std::vector<PropertyRequest> requests;
    std::vector<xcb_get_property_cookie_t> cookies;
};

/// One connection to an X server, with the EWMH atoms interned. Every query waits for the
/// server's answer and reads a failure (window gone, property missing or of another type,
/// connection broken) as nothing. Events stay in the connection for the owner to read. One
/// thread.
class X11Connection {
public:
    /// Connects to `display`, or to $DISPLAY when it is empty.
    explicit X11Connection(const std::string& display);
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    /// False when the display could not be opened or the connection has broken since.
    bool isOpen() const;
    xcb_connection_t* get() const { return connection_; }
    const xcb_ewmh_connection_t& ewmh() const { return ewmh_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t gtkApplicationIdAtom() const { return gtkApplicationId_; }

    /// The 32-bit items of `window`'s `property` when it has type `type`.
    std::vector<std::uint32_t> items(xcb_window_t window, xcb_atom_t property,
                                     xcb_atom_t type) const;
    /// The answers to `requests` in their order, each null where the window or property is
    /// missing or of another type. All are sent before the first answer is awaited: one round trip
    /// however many.
    std::vector<PropertyReply> properties(std::span<const PropertyRequest> requests) const;
    /// `properties` in two halves: the requests go to the server now, and `answers` waits for
    /// what it says. Requests sent must be answered or forgotten, or xcb keeps their replies.
    SentRequests send(std::span<const PropertyRequest> requests) const;
    std::vector<PropertyReply> answers(const SentRequests& sent) const;
    void forget(const SentRequests& sent) const;
    /// The 32-bit items of a reply from `properties`.
    static std::vector<std::uint32_t> itemsOf(const PropertyReply& reply);
    /// The bytes of a reply from `properties` to an 8-bit property.
    static std::optional<std::string> bytesOf(const PropertyReply& reply);

    /// The root's _NET_ACTIVE_WINDOW, or XCB_WINDOW_NONE.
    xcb_window_t activeWindow() const;
    /// Whether `window`'s _NET_WM_STATE holds `state`.
    bool hasState(xcb_window_t window, xcb_atom_t state) const;
    /// Sets which of `window`'s events this connection receives.
    void selectEvents(xcb_window_t window, std::uint32_t mask) const;
    /// Waits until the server has handled every request sent so far.
    void sync() const;
    /// Throws away events already read from the server, for a connection that selects none but
    /// still gets the few the server sends everyone.
    void dropQueuedEvents() const;

private:
    xcb_connection_t* connection_ = nullptr;
    xcb_ewmh_connection_t ewmh_{};
    bool ewmhReady_ = false;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_atom_t gtkApplicationId_ = XCB_ATOM_NONE;
};

}  // namespace marzipel
