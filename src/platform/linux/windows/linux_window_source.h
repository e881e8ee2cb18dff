#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "platform/desktop_entries.h"
#include "platform/linux/windows/window_source_choice.h"
#include "platform/space_monitor.h"
#include "platform/system_log.h"
#include "platform/workspace.h"

namespace marzipel {

class GnomeShellWindows;
class KWinWindowSource;
class LinuxBrightnessServiceFactory;
class LinuxPowerAssertions;
class MarzipelBusService;
class ReportedWindows;
class SwayWindowSource;
class X11SpaceMonitor;
class X11Workspace;

/// The space monitor and workspace of the session's window source, chosen once at start; the
/// choice and its reason go to the system log. A Wayland session without a source of its own
/// also gets a desktop notification that Marzipel cannot see full screen there.
class LinuxWindowSource {
public:
    /// `brightness` and `powerAssertions` are asked to read ahead when a window may have gone
    /// full screen; `bus`, Marzipel's own name, receives the reports of a compositor's script
    /// and is null when Marzipel has none. All must outlive this object.
    LinuxWindowSource(const WindowSourceChoice& choice, const DesktopEntries& entries,
                      SystemLog& log, LinuxBrightnessServiceFactory& brightness,
                      LinuxPowerAssertions& powerAssertions, MarzipelBusService* bus);
    ~LinuxWindowSource();
    LinuxWindowSource(const LinuxWindowSource&) = delete;
    LinuxWindowSource& operator=(const LinuxWindowSource&) = delete;

    SpaceMonitor& spaceMonitor() { return *spaceMonitor_; }
    Workspace& workspace() { return *workspace_; }

private:
    void startX11(SystemLog& log);
    void startGnomeShell(SystemLog& log);
    void startKWin(SystemLog& log, MarzipelBusService& bus);
    void startSway(SystemLog& log);
    /// Where the Wayland sources report to.
    void useReportedWindows();
    void startUnsupported();

    const DesktopEntries& entries_;
    /// Asks the desktop's services ahead, when a window may have gone full screen.
    std::function<void()> readAhead_;
    std::unique_ptr<X11Workspace> x11Workspace_;
    std::unique_ptr<X11SpaceMonitor> x11SpaceMonitor_;
    std::unique_ptr<ReportedWindows> reported_;
    std::unique_ptr<GnomeShellWindows> gnomeShell_;
    std::unique_ptr<KWinWindowSource> kwin_;
    std::unique_ptr<SwayWindowSource> sway_;
    SpaceMonitor* spaceMonitor_ = nullptr;
    Workspace* workspace_ = nullptr;
};

/// The session's facts from the environment and the session bus.
SessionFacts currentSessionFacts();

/// The KWin script that ships with the program: under share/marzipel/ beside the program's
/// folder when installed, beside the program itself in the build tree.
QString kwinScriptPath();

}  // namespace marzipel
