#include "platform/linux/windows/sway/sway_window_source.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/linux/windows/reported_windows.h"
#include "platform/linux/windows/sway/sway_tree.h"

namespace marzipel {

namespace {

constexpr std::string_view kNotNoticed = ": full-screen applications will not be noticed.";

std::optional<ReportedWindow> reported(const std::optional<SwayWindow>& window) {
    if (!window) return std::nullopt;
    return ReportedWindow{window->identity, window->fullScreen};
}

}  // namespace

SwayWindowSource::SwayWindowSource(ReportedWindows& windows, SystemLog& log)
    : windows_(windows), log_(log) {}

SwayWindowSource::~SwayWindowSource() { close(); }

void SwayWindowSource::start(const std::string& path) {
    path_ = path;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        lose("Cannot use Sway's IPC socket \"" + path + "\": not a socket path");
        return;
    }
    path.copy(address.sun_path, path.size());
    socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket_ < 0 ||
        ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        lose("Cannot use Sway's IPC socket " + path_ + ": " + std::strerror(errno));
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readMessages(); });
    send(SwayMessageType::subscribe, R"(["window","workspace"])");
    askForTree();
}

void SwayWindowSource::send(SwayMessageType type, std::string_view payload) {
    if (socket_ < 0) return;
    const std::string message = encodeSwayMessage(type, payload);
    // Requests are a few bytes; Sway reads them at once, so writing blocks no longer than that.
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t written =
            ::send(socket_, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            lose("Cannot use Sway's IPC socket " + path_ + ": " + std::strerror(errno));
            return;
        }
        sent += static_cast<std::size_t>(written);
    }
}

void SwayWindowSource::askForTree() {
    if (std::exchange(treeAsked_, true)) return;
    send(SwayMessageType::getTree, {});
}

void SwayWindowSource::readMessages() {
    if (lost_) return;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::recv(socket_, buffer, sizeof(buffer), MSG_DONTWAIT);
        if (count > 0) {
            reader_.feed(std::string_view(buffer, static_cast<std::size_t>(count)));
            continue;
        }
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
        lose(count == 0 ? "Sway's IPC socket " + path_ + " closed"
                        : "Cannot use Sway's IPC socket " + path_ + ": " + std::strerror(errno));
        return;
    }
    while (std::optional<SwayMessage> message = reader_.next()) {
        if (!handle(*message)) {
            lose("Sway's IPC socket " + path_ + " sent a message that is not JSON we know");
            return;
        }
        if (lost_) return;
    }
    if (reader_.broken())
        lose("Sway's IPC socket " + path_ + " broke the framing: " + reader_.error());
}

bool SwayWindowSource::handle(const SwayMessage& message) {
    switch (static_cast<SwayMessageType>(message.type)) {
        case SwayMessageType::subscribe:
            if (!parseSwaySuccess(message.payload))
                lose("Sway refused to send window events on " + path_);
            return true;
        case SwayMessageType::getTree: {
            const std::optional<SwayTree> tree = parseSwayTree(message.payload);
            if (!tree) return false;
            treeAsked_ = false;
            activeId_ = tree->focused ? tree->focused->id : 0;
            windows_.reportWindows(tree->windows);
            windows_.reportActive(reported(tree->focused));
            return true;
        }
        case SwayMessageType::windowEvent: {
            const std::optional<SwayWindowEvent> event = parseSwayWindowEvent(message.payload);
            if (!event) return false;
            const auto& window = event->container;
            if (event->change == "focus" || (event->change == "fullscreen_mode" && window &&
                                             (window->focused || window->id == activeId_))) {
                activeId_ = window ? window->id : 0;
                windows_.reportActive(reported(window));
            } else if (event->change == "fullscreen_mode" || event->change == "new" ||
                       event->change == "close" || event->change == "move" ||
                       event->change == "floating") {
                askForTree();
            }
            return true;
        }
        case SwayMessageType::workspaceEvent: {
            const std::optional<std::string> change = parseSwayWorkspaceChange(message.payload);
            if (!change) return false;
            // Focus on another workspace: its windows may not have been focused before, or
            // there may be none.
            if (*change == "focus") askForTree();
            return true;
        }
    }
    return true;
}

void SwayWindowSource::lose(const std::string& why) {
    if (lost_) return;
    lost_ = true;
    log_.error(kAppLogSubsystem, kAppLogCategory, why + std::string(kNotNoticed));
    close();
    activeId_ = 0;
    windows_.reportWindows({});
    windows_.reportActive(std::nullopt);
}

void SwayWindowSource::close() {
    // May run inside the notifier's own signal.
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
}

}  // namespace marzipel
