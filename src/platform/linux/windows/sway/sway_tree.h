#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/xdg/app_identifier.h"

namespace marzipel {

/// One of Sway's containers that shows a client's window.
struct SwayWindow {
    /// Sway's container id, stable for the window's life.
    std::int64_t id = 0;
    /// The Wayland app id as both names, or WM_CLASS for an Xwayland window.
    WindowIdentity identity;
    bool fullScreen = false;
    bool focused = false;

    friend bool operator==(const SwayWindow&, const SwayWindow&) = default;
};

/// What a get_tree reply says about windows.
struct SwayTree {
    /// Nothing when the focus is on a workspace, or on a container that holds no client.
    std::optional<SwayWindow> focused;
    /// Every window of a client, in the tree's order, floating and scratchpad ones included.
    std::vector<WindowIdentity> windows;
};

/// Nothing when `json` is not a tree.
std::optional<SwayTree> parseSwayTree(std::string_view json);

/// A "window" event.
struct SwayWindowEvent {
    /// "focus", "fullscreen_mode", "new", "close", "move", "title", ...
    std::string change;
    /// The container it is about, when that shows a client's window.
    std::optional<SwayWindow> container;
};

/// Nothing when `json` is not an object with a string "change".
std::optional<SwayWindowEvent> parseSwayWindowEvent(std::string_view json);

/// The "change" of a "workspace" event; nothing when `json` has none.
std::optional<std::string> parseSwayWorkspaceChange(std::string_view json);

/// Whether a "subscribe" reply says yes.
bool parseSwaySuccess(std::string_view json);

}  // namespace marzipel
