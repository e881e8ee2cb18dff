#include "platform/linux/sway_window_source.h"

#include <QLocalSocket>

#include <utility>

#include "platform/linux/reported_windows.h"
#include "platform/linux/sway_tree.h"

namespace marzipel {

namespace {

constexpr std::string_view kNotNoticed = ": full-screen applications will not be noticed.";

std::optional<ReportedWindow> reported(const std::optional<SwayWindow>& window) {
    if (!window) return std::nullopt;
    return ReportedWindow{window->identity, window->fullScreen};
}

}  // namespace

SwayWindowSource::SwayWindowSource(ReportedWindows& windows, SystemLog& log)
    : windows_(windows), log_(log), socket_(std::make_unique<QLocalSocket>()) {
    QObject::connect(socket_.get(), &QLocalSocket::connected, [this] {
        send(SwayMessageType::subscribe, R"(["window","workspace"])");
        askForTree();
    });
    QObject::connect(socket_.get(), &QLocalSocket::readyRead, [this] { readMessages(); });
    QObject::connect(socket_.get(), &QLocalSocket::errorOccurred,
                     [this](QLocalSocket::LocalSocketError error) {
                         if (error == QLocalSocket::PeerClosedError)
                             lose("Sway's IPC socket " + path_ + " closed");
                         else
                             lose("Cannot use Sway's IPC socket " + path_ + ": " +
                                  socket_->errorString().toStdString());
                     });
    QObject::connect(socket_.get(), &QLocalSocket::disconnected,
                     [this] { lose("Sway's IPC socket " + path_ + " closed"); });
}

SwayWindowSource::~SwayWindowSource() {
    QObject::disconnect(socket_.get(), nullptr, nullptr, nullptr);
}

void SwayWindowSource::start(const std::string& path) {
    path_ = path;
    socket_->connectToServer(QString::fromStdString(path));
}

void SwayWindowSource::send(SwayMessageType type, std::string_view payload) {
    const std::string message = encodeSwayMessage(type, payload);
    socket_->write(message.data(), static_cast<qint64>(message.size()));
}

void SwayWindowSource::askForTree() {
    if (std::exchange(treeAsked_, true)) return;
    send(SwayMessageType::getTree, {});
}

void SwayWindowSource::readMessages() {
    if (lost_) return;
    const QByteArray bytes = socket_->readAll();
    reader_.feed(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
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
    socket_->abort();
    activeId_ = 0;
    windows_.reportWindows({});
    windows_.reportActive(std::nullopt);
}

}  // namespace marzipel
