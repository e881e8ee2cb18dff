#pragma once

#include "base/notification_center.h"
#include "base/subscription.h"
#include "core/app_delegate.h"
#include "core/marzipel_state.h"
#include "core/marzipel_system_client.h"
#include "core/tray_model.h"
#include "core/trigger_state_machine.h"
#include "detection/full_screen_detector.h"
#include "detection/video_playback_probe.h"
#include "platform/application.h"
#include "platform/brightness_service.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/power_assertions.h"
#include "platform/run_marker.h"
#include "platform/space_monitor.h"
#include "platform/system_log.h"
#include "platform/updater.h"
#include "platform/user_directories.h"
#include "platform/workspace.h"

namespace marzipel {

class SettingsManager;

/// Everything the application object reaches the outside world through. All must outlive it.
struct MarzipelPlatform {
    BrightnessServiceFactory& brightness;
    Workspace& workspace;
    PowerAssertions& powerAssertions;
    SpaceMonitor& spaceMonitor;
    Application& application;
    Updater& updater;
    SystemLog& systemLog;
    const Clock& clock;
    Console& console;
    const UserDirectories& userDirectories;
    const SettingsManager& settings;
    NotificationCenter& notificationCenter;
    WelcomeWindowPresenter& welcomeWindow;
    RunMarker& runMarker;
};

/// The running program: builds the delegate, the state, the two system clients, the full-screen
/// detector and the state machine, and feeds the detector's and the platform's notifications to
/// the state machine. Lives for the whole run. Main thread only.
class MarzipelApp {
public:
    /// Stops the process when a keyboard brightness client cannot be created.
    explicit MarzipelApp(const MarzipelPlatform& platform);
    MarzipelApp(const MarzipelApp&) = delete;
    MarzipelApp& operator=(const MarzipelApp&) = delete;

    /// The delegate built first, which the platform asks at launch and on termination.
    AppDelegate& appDelegate() { return appDelegate_; }
    /// The one state object, shared with the tray and the settings window.
    MarzipelState& state() { return state_; }
    /// The client that acts on and restores the system.
    MarzipelSystemClient& systemClient() { return systemClient_; }
    /// Holds the client used for capturing.
    MarzipelDataManager& dataManager() { return dataManager_; }
    /// The full-screen detector, kept for the whole run so that detection works.
    FullScreenDetector& detector() { return detector_; }
    /// The handlers fed by the notifications.
    TriggerStateMachine& stateMachine() { return stateMachine_; }
    /// The menu-bar tray's model, following `state()`.
    TrayModel& tray() { return tray_; }

    /// A request to terminate on a platform with no delegate machinery of its own: asks the
    /// delegate and, when it agrees, posts the will-terminate notification (which restores the
    /// system). True when the program is now to end.
    bool requestTermination();

private:
    Application& application_;
    NotificationCenter& center_;
    AppDelegate appDelegate_;
    Subscription finishedLaunchingPublisher_;
    MarzipelState state_;
    MarzipelSystemClient systemClient_;
    MarzipelDataManager dataManager_;
    FullScreenDetector detector_;
    VideoPlaybackProbe probe_;
    TriggerStateMachine stateMachine_;
    TrayModel tray_;
    Subscription wentFullScreenPublisher_;
    Subscription leftFullScreenPublisher_;
    Subscription appQuittingPublisher_;
};

}  // namespace marzipel
