#include "detection/full_screen_detector.h"

#include <string>

#include "platform/application.h"

namespace marzipel {

FullScreenDetector::FullScreenDetector(SpaceMonitor& monitor, NotificationCenter& center,
                                       SystemLog& systemLog)
    : monitor_(monitor), center_(center) {
    if (monitor_.mainBundleIsAgent()) {
        // An agent's window is never placed on a full-screen space, so every space looks
        // regular; the warning is advice only.
        systemLog.error(kAppLogSubsystem, kAppLogCategory,
                        "Warning to developer of " + monitor_.mainBundleName().value_or("(null)") +
                            ": full screen detection does not work when LSUIElement is set to "
                            "YES in Info.plist.");
    }
    finishedLaunching_ =
        center_.subscribe(kApplicationDidFinishLaunchingNotification, nullptr,
                          [this](const Notification&) { updateFullScreenStatus(); });
    monitor_.setActiveSpaceChangedHandler([this] { updateFullScreenStatus(); });
}

FullScreenDetector::~FullScreenDetector() { monitor_.setActiveSpaceChangedHandler({}); }

void FullScreenDetector::updateFullScreenStatus() {
    const bool onActiveSpace = monitor_.isOnActiveSpace();
    fullScreenAppIsActive_ = !onActiveSpace;
    center_.post(
        onActiveSpace ? kSwitchedToRegularSpaceNotification : kSwitchedToFullScreenAppNotification,
        this);
}

}  // namespace marzipel
