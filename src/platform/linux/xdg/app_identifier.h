#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/desktop_entries.h"
#include "platform/workspace.h"

namespace marzipel {

/// What a window tells about the application that owns it, whichever window system shows it.
struct WindowIdentity {
    std::int32_t processId = 0;
    /// An id the application states for itself and that names its desktop entry as it is
    /// (GTK's application id on X11).
    std::optional<std::string> applicationId;
    /// Names matched against desktop entries: WM_CLASS instance and class on X11, the app id
    /// (and resource class) on Wayland. Either may be empty.
    std::string instance;
    std::string className;

    friend bool operator==(const WindowIdentity&, const WindowIdentity&) = default;
};

/// Finds the desktop entry of a window's application, in order: the stated application id,
/// the flatpak or snap the process runs in, an entry whose StartupWMClass is the class or
/// instance, an entry named after the instance or the class. Its name is the entry's, else
/// the class. A process that cannot be read is described from its window alone.
class AppIdentifier {
public:
    /// Reads processes under `procRoot`.
    AppIdentifier(const DesktopEntries& entries, std::string procRoot)
        : entries_(entries), procRoot_(std::move(procRoot)) {}

    /// `regular` says whether the process shows a normal window in the taskbar.
    RunningApplication describe(const WindowIdentity& window, bool regular) const;

private:
    std::optional<DesktopEntry> application(std::string_view id) const;
    std::optional<DesktopEntry> byStartupWmClass(const WindowIdentity& window) const;
    std::optional<std::string> sandboxId(std::int32_t processId) const;

    const DesktopEntries& entries_;
    std::string procRoot_;
};

}  // namespace marzipel
