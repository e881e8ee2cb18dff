#pragma once

#include <string>
#include <string_view>

#include "platform/brightness_service.h"
#include "platform/clock.h"
#include "platform/run_marker.h"
#include "platform/system_log.h"
#include "platform/workspace.h"

namespace marzipel {

class MarzipelDataManager;
class MarzipelState;
class MarzipelSystemClient;
class SettingsManager;
class VideoPlaybackProbe;

/// Whether `now` falls in a Night Shift custom schedule. Written for a schedule that crosses
/// midnight; for one within a day it answers true at almost every hour, which is kept as is.
bool isWithinCustomSchedule(LocalTime now, BlueLightStatus::Time from, BlueLightStatus::Time to);

/// Decides when the system becomes active and when it stops, capturing the keyboard brightness
/// and Night Shift before turning them off and putting them back afterwards. Settings are read
/// afresh at every decision. While active a marker stays placed, so that the next run can put
/// back what a run that ended unexpectedly left off. Main thread only, one handler at a time.
class TriggerStateMachine {
public:
    /// Captures through `dataManager`'s client; acts and restores through `systemClient`.
    TriggerStateMachine(MarzipelState& state, const SettingsManager& settings,
                        MarzipelDataManager& dataManager, MarzipelSystemClient& systemClient,
                        const Workspace& workspace, VideoPlaybackProbe& probe, const Clock& clock,
                        RunMarker& runMarker, SystemLog& systemLog);

    /// The space now shown belongs to a full-screen app; judges the frontmost app.
    void wentFullScreen();
    /// The space now shown is a regular one.
    void leftFullScreen();
    /// The application is about to terminate.
    void appQuitting();

    /// Captures the system state, becomes active, then turns off what the user enabled.
    void activate(const std::string& bundleId);
    /// Puts back what was captured, if active, and becomes inactive.
    void deactivate();
    /// Once per run, before the first activation: when the marker is one of a run that has
    /// ended, in this boot or an earlier one, puts back what that run captured, by the rules of
    /// `deactivate`, and removes it.
    void restoreAfterUnexpectedEnd();

private:
    void log(std::string_view message) const;
    void restoreSaved();
    void restoreNightShift();

    MarzipelState& state_;
    const SettingsManager& settings_;
    MarzipelDataManager& dataManager_;
    MarzipelSystemClient& systemClient_;
    const Workspace& workspace_;
    VideoPlaybackProbe& probe_;
    const Clock& clock_;
    RunMarker& runMarker_;
    SystemLog& systemLog_;
    bool markerChecked_ = false;
    /// Why the last keyboard read failed, said once until a read succeeds or fails otherwise: a
    /// machine without a keyboard light would say it at every film.
    std::string keyboardFailure_;
};

}  // namespace marzipel
