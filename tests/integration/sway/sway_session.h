#pragma once

#include <string>

#include "support/compositor_session.h"
#include "support/temp_folder.h"

namespace marzipel {

/// A headless Sway of the test's own, run as nobody (Sway refuses root) in a fresh runtime
/// folder, with its Wayland display and IPC socket ready.
class SwaySession {
public:
    /// Throws when Sway is not ready within a deadline.
    SwaySession();

    const std::string& ipcSocket() const { return ipcSocket_; }
    /// A Wayland client of this session showing our test window with `appId`, painted.
    Child startWindow(const std::string& appId) const;
    /// Runs one Sway command through swaymsg, as a user would; throws when it fails.
    void command(const std::string& text);
    /// Ends Sway, as when the session goes away under the program.
    void stop() { sway_.stop(); }

private:
    TempFolder folder_;
    std::string display_;
    std::string ipcSocket_;
    Child sway_;
};

}  // namespace marzipel
