#include "sway_session.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace marzipel {
namespace {

namespace fs = std::filesystem;

// Sway refuses to run as root.
constexpr uid_t kNobody = 65534;

/// The Wayland display socket Sway made in `runtime`: "wayland-N", beside its lock file.
std::string displaySocket(const std::string& runtime) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(runtime, error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("wayland-") && !name.ends_with(".lock") && entry.is_socket(error))
            return entry.path().string();
    }
    return {};
}

}  // namespace

SwaySession::SwaySession() {
    runtime_ = folder_ / "runtime";
    fs::create_directory(runtime_);
    if ((getuid() == 0 && chown(runtime_.c_str(), kNobody, kNobody) != 0) ||
        chmod(runtime_.c_str(), 0700) != 0)
        throw std::runtime_error("cannot hand " + runtime_ + " to Sway's user");
    // Sway makes its IPC socket where SWAYSOCK says when nothing is there yet.
    ipcSocket_ = runtime_ + "/sway-ipc.sock";
    const std::string config = folder_ / "config";
    writeFile(config, "xwayland disable\n");
    std::vector<std::string> command{SWAY_PROGRAM, "-c", config};
    if (getuid() == 0)
        command.insert(command.begin(),
                       {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    sway_ =
        Child(command, {"XDG_RUNTIME_DIR=" + runtime_, "HOME=" + folder_.path().string(),
                        "WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman",
                        "WAYLAND_DISPLAY=", "SWAYSOCK=" + ipcSocket_, "DISPLAY="});
    const bool ready = waitUntil([&] {
        display_ = displaySocket(runtime_);
        std::error_code error;
        return !sway_.running() || (!display_.empty() && fs::is_socket(ipcSocket_, error));
    });
    if (!ready || !sway_.running()) throw std::runtime_error("Sway did not start");
}

Child SwaySession::startWindow(const std::string& appId) {
    const std::string clientRuntime = folder_ / "client-runtime";
    fs::create_directories(clientRuntime);
    fs::permissions(clientRuntime, fs::perms::owner_all);
    Child window;
    startAndReadLine(window, {TEST_WINDOW_PROGRAM, appId},
                     {"QT_QPA_PLATFORM=wayland", "WAYLAND_DISPLAY=" + display_,
                      "XDG_RUNTIME_DIR=" + clientRuntime});
    return window;
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
