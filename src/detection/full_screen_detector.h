#pragma once

#include "base/notification_center.h"
#include "base/subscription.h"
#include "platform/space_monitor.h"
#include "platform/system_log.h"

namespace marzipel {

/// Posted when the space now shown belongs to a full-screen application.
inline constexpr char kSwitchedToFullScreenAppNotification[] =
    "com.brindlewocktavia.fullscreendetector.switchedToFullScreenApp";
/// Posted when the space now shown is a regular one.
inline constexpr char kSwitchedToRegularSpaceNotification[] =
    "com.brindlewocktavia.fullscreendetector.switchedToRegularSpace";

/// Tells whether the space being shown belongs to a full-screen application, without asking
/// any application. Posts one of the two notifications above, with itself as sender, after
/// every space change (repeats included) and once when launching has finished. Main thread.
class FullScreenDetector {
public:
    /// Warns on `systemLog` when the program runs as an agent (detection then does not work),
    /// then listens to `monitor` and for the finished-launching notification on `center`.
    FullScreenDetector(SpaceMonitor& monitor, NotificationCenter& center, SystemLog& systemLog);
    ~FullScreenDetector();
    FullScreenDetector(const FullScreenDetector&) = delete;
    FullScreenDetector& operator=(const FullScreenDetector&) = delete;

    /// True while the space shown is a full-screen application's; false until the first update.
    bool fullScreenAppIsActive() const { return fullScreenAppIsActive_; }

    /// Recomputes the flag from scratch and posts the matching notification.
    void updateFullScreenStatus();

private:
    SpaceMonitor& monitor_;
    NotificationCenter& center_;
    bool fullScreenAppIsActive_ = false;
    Subscription finishedLaunching_;
};

}  // namespace marzipel
