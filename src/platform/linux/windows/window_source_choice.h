#pragma once

#include <string>

namespace marzipel {

/// Where the Linux program learns which window has focus and whether it is full screen.
enum class WindowSourceKind { x11, kwin, sway, gnomeShell, none };

/// What the session says about itself at start.
struct SessionFacts {
    std::string sessionType;      // XDG_SESSION_TYPE
    std::string currentDesktop;   // XDG_CURRENT_DESKTOP, a colon-separated list
    bool waylandDisplay = false;  // WAYLAND_DISPLAY is set
    bool swaySocket = false;      // SWAYSOCK is set
    bool kwinOnBus = false;       // org.kde.KWin has an owner on the session bus
};

struct WindowSourceChoice {
    WindowSourceKind kind = WindowSourceKind::x11;
    /// Why, for the system log.
    std::string reason;
};

/// An X11 session, or one that does not say what it is and has no Wayland display, keeps the
/// X11 source; in a Wayland session Sway, then KDE Plasma, then GNOME have a source of their own.
WindowSourceChoice chooseWindowSource(const SessionFacts& session);

}  // namespace marzipel
