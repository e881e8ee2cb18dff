#pragma once

#include <string>
#include <vector>

#include "support/compositor_session.h"
#include "support/temp_folder.h"

namespace marzipel::waylandtest {

/// A headless KWin on Wayland with a runtime folder of its own, on the session bus this test
/// program runs on, with Night Color on at all hours. Throws when KWin does not come up.
class KWinSession {
public:
    KWinSession();

    /// What a client of this KWin needs in its environment, for Qt's `platform` plugin.
    std::vector<std::string> clientEnvironment(const std::string& platform = "wayland") const;
    /// Ends KWin with SIGKILL and waits until it has left the bus.
    void kill();
    /// Starts KWin again unless it runs.
    void ensureRunning();
    /// Our test window with Wayland app id `appId`, painted; throws when it is not.
    Child openWindow(const std::string& appId) const;
    /// Runs `source` as a KWin script of its own, unloaded after it ran unless `keepLoaded`;
    /// gives its name. Throws when KWin does not run it.
    std::string runScript(const std::string& source, bool keepLoaded = false);
    void unloadScript(const std::string& name);

private:
    TempFolder folder_;
    Child kwin_;
    int scripts_ = 0;
};

}  // namespace marzipel::waylandtest
