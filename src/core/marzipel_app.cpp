#include "core/marzipel_app.h"

namespace marzipel {

MarzipelApp::MarzipelApp(const MarzipelPlatform& platform)
    : application_(platform.application),
      center_(platform.notificationCenter),
      appDelegate_(platform.application, platform.updater, platform.welcomeWindow,
                   platform.settings, platform.userDirectories, platform.clock, platform.console),
      // Subscribed before the detector: the delegate installs the debug logger at launch, ahead
      // of the detector's first post; a run that ended while active is repaired in between, once
      // the logger can tell of it and before an activation can replace the record.
      finishedLaunchingPublisher_(
          center_.subscribe(kApplicationDidFinishLaunchingNotification, nullptr,
                            [this](const Notification&) {
                                appDelegate_.applicationDidFinishLaunching();
                                stateMachine_.restoreAfterUnexpectedEnd();
                            })),
      systemClient_(platform.brightness.create(), platform.settings),
      dataManager_(platform.brightness.create(), platform.settings),
      detector_(platform.spaceMonitor, center_, platform.systemLog),
      probe_(platform.powerAssertions, platform.workspace, platform.systemLog, platform.settings),
      stateMachine_(state_, platform.settings, dataManager_, systemClient_, platform.workspace,
                    probe_, platform.clock, platform.runMarker, platform.systemLog),
      tray_(state_, platform.workspace, platform.application) {
    wentFullScreenPublisher_ =
        center_.subscribe(kSwitchedToFullScreenAppNotification, nullptr,
                          [this](const Notification&) { stateMachine_.wentFullScreen(); });
    leftFullScreenPublisher_ =
        center_.subscribe(kSwitchedToRegularSpaceNotification, nullptr,
                          [this](const Notification&) { stateMachine_.leftFullScreen(); });
    appQuittingPublisher_ =
        center_.subscribe(kApplicationWillTerminateNotification, nullptr,
                          [this](const Notification&) { stateMachine_.appQuitting(); });
}

bool MarzipelApp::requestTermination() {
    if (appDelegate_.applicationShouldTerminate() != TerminateReply::now) return false;
    center_.post(kApplicationWillTerminateNotification, &application_);
    return true;
}

}  // namespace marzipel
