#pragma once

#include <memory>
#include <string>
#include <vector>

#include "integration/dbus/mock_service.h"
#include "support/compositor_session.h"

namespace marzipel::dbustest {

/// A headless GNOME Shell on this test program's private buses, as a user logs in to it:
/// Marzipel's extension installed in the user's data folder and switched on in the user's keys,
/// the overview left. Beside it a stand-in logind, without which the shell ends at once. The
/// desktop entries named at construction exist before the shell starts, so that it names their
/// windows by them. Throws when the shell does not come up.
class GnomeShellSession {
public:
    explicit GnomeShellSession(const std::vector<std::string>& desktopEntryIds);
    ~GnomeShellSession();

    /// What a Wayland client of this shell needs in its environment ("NAME=value").
    std::vector<std::string> clientEnvironment() const;
    /// "WAYLAND_DISPLAY=name".
    std::string displayVariable() const;
    /// The user's data folder (XDG_DATA_HOME) the shell reads.
    std::string dataHome() const;
    /// Our test window naming its application `appId`, painted.
    Child startWindow(const std::string& appId) const;
    /// The extension's state as the shell reports it (1 is on); 0 when it does not know it.
    int extensionState() const;
    /// Switches the extension as the Extensions app does; true once the shell says it is done
    /// and has written the user's keys.
    bool switchExtension(bool on) const;

private:
    void leaveOverview() const;

    std::unique_ptr<MockService> logind_;
    Child shell_;
};

/// Desktop entries that exist before the shell starts.
inline constexpr char kListedApp[] = "marzipel-test-player";
inline constexpr char kOtherListedApp[] = "marzipel-test-other";

/// The one session of this test program, started before its first test (with the desktop
/// entries above) and ended after its last.
GnomeShellSession& gnomeShell();

}  // namespace marzipel::dbustest
