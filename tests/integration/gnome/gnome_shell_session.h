#pragma once

#include <string>
#include <vector>

#include "integration/dbus/mock_service.h"
#include "support/compositor_session.h"

namespace marzipel::dbustest {

/// A headless GNOME Shell on this test program's private buses, as a user logs in to it:
/// Marzipel's extension installed in the user's data folder and switched on in the user's keys,
/// the overview left. A second extension puts the shell in its unsafe mode, the only one in
/// which it answers Eval. Beside it a stand-in logind, without which the shell ends at once. Throws
/// when the shell does not come up.
class GnomeShellSession {
public:
    GnomeShellSession();

    /// What a Wayland client of this shell needs in its environment ("NAME=value").
    std::vector<std::string> clientEnvironment() const;
    /// Our test window naming its application `appId`, painted.
    Child startWindow(const std::string& appId) const;
    /// The extension's state as the shell reports it (1 is on); 0 when it does not know it.
    int extensionState() const;
    /// Switches the extension as the Extensions app does; true once the shell says it is done
    /// and has written the user's keys.
    bool switchExtension(bool on) const;
    /// What the shell's own JavaScript makes of `code`, as JSON; empty when it throws.
    std::string eval(const std::string& code) const;
    /// Marzipel's menu in the top bar as the shell shows it: its labels as JSON, "null" when
    /// there is none.
    std::string topBarMenu() const;

private:
    MockService logind_{"logind", "org.freedesktop.login1", true};
    Child shell_;
};

/// The one session of this test program, started before its first test and ended after its
/// last.
GnomeShellSession& gnomeShell();

}  // namespace marzipel::dbustest
