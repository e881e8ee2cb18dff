#include "integration/sway/sway_session.h"

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace marzipel {

namespace fs = std::filesystem;

SwaySession::SwaySession() {
    const bool root = getuid() == 0;
    const fs::path runtime = folder_.path() / "runtime";
    // Sway refuses to run as root: as root, it runs as nobody.
    makeRuntimeFolder(runtime, root ? std::optional<uid_t>(65534) : std::nullopt);
    // The clients keep a runtime folder of their own user.
    makeRuntimeFolder(folder_.path() / "client-runtime");
    // Sway makes its IPC socket where SWAYSOCK says when nothing is there yet, and its display
    // the first free "wayland-N", in a fresh folder the first of all.
    ipcSocket_ = (runtime / "sway-ipc.sock").string();
    display_ = (runtime / "wayland-1").string();
    writeFile(folder_ / "config", "xwayland disable\n");
    std::vector<std::string> command{SWAY_PROGRAM, "-c", folder_ / "config"};
    if (root)
        command.insert(command.begin(),
                       {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    startServer(sway_, command,
                {"XDG_RUNTIME_DIR=" + runtime.string(), "HOME=" + folder_.path().string(),
                 "WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman",
                 "WAYLAND_DISPLAY=", "SWAYSOCK=" + ipcSocket_, "DISPLAY="},
                [&] {
                    std::error_code error;
                    return fs::is_socket(display_, error) && fs::is_socket(ipcSocket_, error);
                });
}

Child SwaySession::startWindow(const std::string& appId) const {
    return startTestWindow(appId,
                           waylandClientEnvironment(folder_.path() / "client-runtime", display_));
}

void SwaySession::command(const std::string& text) {
    Child swaymsg({"swaymsg", "-s", ipcSocket_, text});
    siginfo_t info{};
    const bool ended = waitUntil([&] { return !swaymsg.running(); }, 5s) &&
                       waitid(P_PID, swaymsg.pid(), &info, WEXITED | WNOHANG | WNOWAIT) == 0;
    if (!ended || info.si_code != CLD_EXITED || info.si_status != 0)
        throw std::runtime_error("swaymsg failed: " + text);
}

}  // namespace marzipel
