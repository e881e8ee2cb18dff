#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <string>

namespace marzipel {

/// Whether the display Qt would open for this process answers now: the Wayland compositor's
/// socket or the X server, by QT_QPA_PLATFORM, WAYLAND_DISPLAY and DISPLAY as Qt reads them.
/// A platform without a display server (offscreen and the like) always answers.
bool displayReachable();

/// Tells when the display comes back, and when the user's runtime folder is gone, which is how
/// the end of the last session of the user shows. Waits on the folders' changes, not on a clock;
/// a socket that is bound but not yet listening is asked again a few times.
class DisplayReturnWatch final : public QObject {
public:
    DisplayReturnWatch(std::function<void()> back, std::function<void()> sessionEnded);

private:
    void check();

    QFileSystemWatcher folders_;
    QTimer retry_;
    int retriesLeft_ = 0;
    std::string runtimeFolder_;
    std::function<void()> back_;
    std::function<void()> sessionEnded_;
};

}  // namespace marzipel
