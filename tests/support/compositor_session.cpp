#include "support/compositor_session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "support/event_loop_wait.h"

namespace marzipel {

void makeRuntimeFolder(const std::filesystem::path& path, std::optional<uid_t> owner) {
    std::filesystem::create_directories(path);
    if ((owner && chown(path.c_str(), *owner, *owner) != 0) || chmod(path.c_str(), 0700) != 0)
        throw std::runtime_error("cannot make the runtime folder " + path.string());
}

void startServer(Child& server, const std::vector<std::string>& argv,
                 const std::vector<std::string>& environment, const std::function<bool()>& ready,
                 std::chrono::milliseconds timeout) {
    server = Child(argv, environment);
    if (processEventsUntil([&] { return !server.running() || ready(); }, timeout) &&
        server.running())
        return;
    throw std::runtime_error(argv.front() + " did not come up");
}

std::vector<std::string> waylandClientEnvironment(const std::filesystem::path& runtime,
                                                  const std::string& display,
                                                  const std::string& platform) {
    return {"XDG_RUNTIME_DIR=" + runtime.string(), "WAYLAND_DISPLAY=" + display,
            "QT_QPA_PLATFORM=" + platform};
}

Child startTestWindow(const std::string& appId, const std::vector<std::string>& environment,
                      std::chrono::milliseconds timeout) {
    Child window;
    startAndReadLine(window, {TEST_WINDOW_PROGRAM, appId}, environment, timeout);
    return window;
}

bool signalUntil(pid_t process, int signal, const std::function<bool()>& condition) {
    for (int attempt = 0; attempt < 5; ++attempt) {
        kill(process, signal);
        if (processEventsUntil(condition, 2s)) return true;
    }
    return false;
}

}  // namespace marzipel
