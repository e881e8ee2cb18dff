#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/event_loop_wait.h"

namespace marzipel {

/// Makes `path` a runtime folder (XDG_RUNTIME_DIR) only `owner` (by default we) may enter.
inline void makeRuntimeFolder(const std::filesystem::path& path, std::optional<uid_t> owner = {}) {
    std::filesystem::create_directories(path);
    if ((owner && chown(path.c_str(), *owner, *owner) != 0) || chmod(path.c_str(), 0700) != 0)
        throw std::runtime_error("cannot make the runtime folder " + path.string());
}

/// Starts `server` and waits, handling Qt events, until `ready`; throws when it ends first or
/// `timeout` passes.
inline void startServer(Child& server, const std::vector<std::string>& argv,
                        const std::vector<std::string>& environment,
                        const std::function<bool()>& ready,
                        std::chrono::milliseconds timeout = 10s) {
    server = Child(argv, environment);
    if (processEventsUntil([&] { return !server.running() || ready(); }, timeout) &&
        server.running())
        return;
    throw std::runtime_error(argv.front() + " did not come up");
}

/// A Wayland client's runtime folder, compositor `display` (a name in it or a path) and Qt
/// `platform`, as "NAME=value".
inline std::vector<std::string> waylandClientEnvironment(const std::filesystem::path& runtime,
                                                         const std::string& display,
                                                         const std::string& platform = "wayland") {
    return {"XDG_RUNTIME_DIR=" + runtime.string(), "WAYLAND_DISPLAY=" + display,
            "QT_QPA_PLATFORM=" + platform};
}

/// Our test window (test_window_program.cpp) naming its application `appId`; returns once it
/// is painted, which may be before the compositor shows it, and throws when it is not.
inline Child startTestWindow(const std::string& appId, const std::vector<std::string>& environment,
                             std::chrono::milliseconds timeout = 10s) {
    Child window;
    startAndReadLine(window, {TEST_WINDOW_PROGRAM, appId}, environment, timeout);
    return window;
}

/// Sends `signal` to `process` until `condition` holds, handling Qt events; false when it never
/// does. A Qt window asked back from full screen before the compositor's answer to going full
/// screen has reached it forgets to ask.
inline bool signalUntil(pid_t process, int signal, const std::function<bool()>& condition) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        kill(process, signal);
        if (processEventsUntil(condition, 2s)) return true;
    }
    return false;
}

}  // namespace marzipel
