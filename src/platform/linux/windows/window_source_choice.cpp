#include "platform/linux/windows/window_source_choice.h"

#include <sstream>

namespace marzipel {

namespace {

bool desktopIs(const std::string& desktops, const std::string& name) {
    std::istringstream list(desktops);
    std::string desktop;
    while (std::getline(list, desktop, ':'))
        if (desktop == name) return true;
    return false;
}

}  // namespace

WindowSourceChoice chooseWindowSource(const SessionFacts& session) {
    const bool wayland =
        session.sessionType == "wayland" || (session.sessionType.empty() && session.waylandDisplay);
    if (!wayland)
        return {WindowSourceKind::x11, session.sessionType.empty()
                                           ? "no Wayland display"
                                           : "XDG_SESSION_TYPE is " + session.sessionType};
    if (session.swaySocket) return {WindowSourceKind::sway, "Wayland session with SWAYSOCK set"};
    if (desktopIs(session.currentDesktop, "KDE"))
        return {WindowSourceKind::kwin, "Wayland session on KDE"};
    if (session.kwinOnBus)
        return {WindowSourceKind::kwin, "Wayland session with KWin on the session bus"};
    if (desktopIs(session.currentDesktop, "GNOME"))
        return {WindowSourceKind::gnomeShell, "Wayland session on GNOME"};
    return {WindowSourceKind::none, "Wayland session on " + (session.currentDesktop.empty()
                                                                 ? std::string("an unknown desktop")
                                                                 : session.currentDesktop)};
}

}  // namespace marzipel
