#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/linux/windows/sway/sway_ipc_reader.h"
#include "platform/system_log.h"

class QSocketNotifier;

namespace marzipel {

class ReportedWindows;

/// Tells `windows` what Sway's IPC socket says: the focused window and whether it is full
/// screen, straight from each window event, and the list of windows from the whole tree, read
/// at start and whenever windows come, go, move or another workspace takes the focus. Only
/// Sway's messages drive it; there is no timer. When the socket cannot be reached, closes or
/// sends what cannot be read, no window has focus from then on and one line goes to `log`.
/// Made after the Qt application object; main thread only.
class SwayWindowSource {
public:
    /// Both must outlive this object.
    SwayWindowSource(ReportedWindows& windows, SystemLog& log);
    ~SwayWindowSource();
    SwayWindowSource(const SwayWindowSource&) = delete;
    SwayWindowSource& operator=(const SwayWindowSource&) = delete;

    /// Connects to the socket at `path` ($SWAYSOCK); what follows arrives on the event loop.
    void start(const std::string& path);

private:
    void send(SwayMessageType type, std::string_view payload);
    void readMessages();
    void close();
    /// False when the message cannot be read.
    bool handle(const SwayMessage& message);
    void askForTree();
    void lose(const std::string& why);

    ReportedWindows& windows_;
    SystemLog& log_;
    int socket_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    SwayIpcReader reader_;
    std::string path_;
    /// A tree is asked for and not yet read: an event read meanwhile is already in its answer.
    bool treeAsked_ = false;
    std::int64_t activeId_ = 0;
    bool lost_ = false;
};

}  // namespace marzipel
