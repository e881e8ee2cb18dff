#include "platform/linux/windows/display_connection.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <vector>

namespace marzipel {

namespace {

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string waylandSocketPath() {
    std::string name = environmentValue("WAYLAND_DISPLAY");
    if (name.empty()) name = "wayland-0";
    if (name.front() == '/') return name;
    const std::string runtime = environmentValue("XDG_RUNTIME_DIR");
    return runtime.empty() ? "" : runtime + "/" + name;
}

bool waylandReachable() {
    const std::string path = waylandSocketPath();
    sockaddr_un address{};
    if (path.empty() || path.size() >= sizeof(address.sun_path)) return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) return false;
    const bool connected =
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    ::close(socket);
    return connected;
}

bool x11Reachable() {
    if (environmentValue("DISPLAY").empty()) return false;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return connected;
}

/// The display servers Qt would try, in its order; empty for a platform that needs none.
std::vector<std::string> displayKinds() {
    const std::string platforms = environmentValue("QT_QPA_PLATFORM");
    if (platforms.empty()) {
        if (!environmentValue("WAYLAND_DISPLAY").empty()) return {"wayland"};
        return {"xcb"};
    }
    std::vector<std::string> kinds;
    std::istringstream list(platforms);
    for (std::string platform; std::getline(list, platform, ';');) {
        if (platform.starts_with("wayland"))
            kinds.push_back("wayland");
        else if (platform.starts_with("xcb"))
            kinds.push_back("xcb");
        else
            return {};
    }
    return kinds;
}

}  // namespace

bool displayReachable() {
    const std::vector<std::string> kinds = displayKinds();
    if (kinds.empty()) return true;
    for (const std::string& kind : kinds) {
        if (kind == "wayland" ? waylandReachable() : x11Reachable()) return true;
    }
    return false;
}

DisplayReturnWatch::DisplayReturnWatch(std::function<void()> back,
                                       std::function<void()> sessionEnded)
    : runtimeFolder_(environmentValue("XDG_RUNTIME_DIR")),
      back_(std::move(back)),
      sessionEnded_(std::move(sessionEnded)) {
    QStringList folders;
    for (const std::string& kind : displayKinds()) {
        const std::string socket = kind == "wayland" ? waylandSocketPath() : "/tmp/.X11-unix/";
        if (!socket.empty())
            folders << QString::fromStdString(std::filesystem::path(socket).parent_path());
    }
    if (!runtimeFolder_.empty()) folders << QString::fromStdString(runtimeFolder_);
    folders.removeDuplicates();
    folders_.addPaths(folders);
    connect(&folders_, &QFileSystemWatcher::directoryChanged, this, [this] {
        retriesLeft_ = 50;
        check();
    });
    retry_.setSingleShot(true);
    retry_.setInterval(100);
    connect(&retry_, &QTimer::timeout, this, [this] { check(); });
}

void DisplayReturnWatch::check() {
    const bool sessionEnded = !runtimeFolder_.empty() && !std::filesystem::exists(runtimeFolder_);
    if (!sessionEnded && !displayReachable()) {
        if (retriesLeft_-- > 0) retry_.start();
        return;
    }
    // Each is told once.
    folders_.disconnect(this);
    retry_.disconnect(this);
    retry_.stop();
    (sessionEnded ? sessionEnded_ : back_)();
}

}  // namespace marzipel
