#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/desktop_entries.h"
#include "platform/workspace.h"

class QObject;

namespace marzipel {

class X11Connection;

/// Running applications as the X11 window manager lists them. An application is a process
/// (_NET_WM_PID) owning windows of _NET_CLIENT_LIST; it is regular when one of them is a normal
/// window shown in the taskbar, else an accessory. Windows without a process id are left out.
/// Its identity is the desktop entry found by, in order: _GTK_APPLICATION_ID, the flatpak or
/// snap the process runs in, an entry whose StartupWMClass is the WM_CLASS class or instance,
/// an entry named after the instance or the class; its name is the entry's, else the class.
/// A process that cannot be read is described from its window alone. Main thread.
class X11Workspace final : public Workspace {
public:
    /// Asks the X server at `display` ($DISPLAY when empty), connecting again when the
    /// connection has broken, and reads processes under `procRoot`.
    explicit X11Workspace(const DesktopEntries& entries, std::string display = {},
                          std::string procRoot = "/proc");
    ~X11Workspace() override;

    /// The process of the window in _NET_ACTIVE_WINDOW, named after that window.
    std::optional<RunningApplication> frontmostApplication() const override;
    /// Asks the server now for what `frontmostApplication` needs, for a call later in this
    /// event-loop turn; that answer then serves every call until the turn ends or the next
    /// read-ahead. `likelyActiveWindow` is the window thought to be active, asked about too.
    void readAhead(std::uint32_t likelyActiveWindow);
    /// In the order of each process's first window in _NET_CLIENT_LIST.
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(std::int32_t processId) const override;
    /// Hands a file URL to Qt's desktop services; needs the Qt GUI application object.
    bool openFolder(const std::string& folder) override;

private:
    struct ReadAhead;

    const X11Connection* connection() const;
    void dropReadAhead() const;

    const DesktopEntries& entries_;
    std::string display_;
    std::string procRoot_;
    mutable std::unique_ptr<X11Connection> connection_;
    mutable std::unique_ptr<ReadAhead> readAhead_;
    std::unique_ptr<QObject> turnEnd_;
    bool dropPosted_ = false;
};

}  // namespace marzipel
