#include "core/trigger_state_machine.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/marzipel_state.h"
#include "core/marzipel_system_client.h"
#include "detection/running_application_adapter.h"
#include "detection/video_playback_probe.h"
#include "diagnostics/debug_log.h"
#include "settings/settings_manager.h"

namespace marzipel {

bool isWithinCustomSchedule(LocalTime now, BlueLightStatus::Time from, BlueLightStatus::Time to) {
    if (from.hour < now.hour) return true;
    if (now.hour < to.hour) return true;
    if (now.hour == from.hour) return now.minute >= from.minute;
    if (now.hour == to.hour) return now.minute <= to.minute;
    return false;
}

TriggerStateMachine::TriggerStateMachine(MarzipelState& state, const SettingsManager& settings,
                                         MarzipelDataManager& dataManager,
                                         MarzipelSystemClient& systemClient,
                                         const Workspace& workspace, VideoPlaybackProbe& probe,
                                         const Clock& clock, RunMarker& runMarker,
                                         SystemLog& systemLog)
    : state_(state),
      settings_(settings),
      dataManager_(dataManager),
      systemClient_(systemClient),
      workspace_(workspace),
      probe_(probe),
      clock_(clock),
      runMarker_(runMarker),
      systemLog_(systemLog) {}

void TriggerStateMachine::wentFullScreen() {
    const auto front = workspace_.frontmostApplication();
    if (!front) return;
    const RunningApplicationAdapter frontmost(*front);
    const std::string id = frontmost.bundleIdentifier().value_or("Unknown app");
    log(id + " went full screen");

    const auto apps = settings_.enabledApps().get();
    const bool isTrigger =
        std::ranges::any_of(apps, [&](const AppItem& app) { return app.id == id; });
    const bool isActive = state_.isActive();

    if (!isTrigger) {
        if (isActive) {
            log("full-screen switch from enabled to disabled app, deactivating");
            deactivate();
        }
        return;
    }
    if (isActive) {
        log("full-screen switch between two enabled apps, doing nothing");
        return;
    }

    // The probe runs for every such event, also for apps that do not ask for it.
    if (frontmost.isAmong(probe_.applicationsPlayingVideo())) {
        log(id + " went full screen while playing video");
        activate(id);
        return;
    }
    log(id + " went full screen but is not playing video");
    const auto appFeatures = settings_.appFeatures().get();
    const auto entry = appFeatures.find(id);
    if (entry != appFeatures.end() && entry->second.contains(Feature::onlyWhenPlayingVideo)) {
        log("Not enabling for " + id + ": not playing video");
        return;
    }
    activate(id);
}

void TriggerStateMachine::leftFullScreen() {
    log("Left full screen");
    deactivate();
}

void TriggerStateMachine::appQuitting() {
    log("App quitting, deactivating");
    deactivate();
}

void TriggerStateMachine::activate(const std::string& /*bundleId*/) {
    // A record left by a run that ended while active must be used before it is replaced.
    restoreAfterUnexpectedEnd();
    MarzipelSystemClient& capture = dataManager_.systemClient;
    const Result<float> keyboard = capture.keyboardBrightness();
    const BlueLightStatus nightShift = capture.nightShiftStatus();
    // Without the level to put back, the keyboard is not switched off: it would stay dark.
    std::optional<float> keyboardLevel;
    if (keyboard.ok()) {
        keyboardLevel = keyboard.value();
        keyboardFailure_.clear();
    } else if (keyboard.status().message() != keyboardFailure_) {
        keyboardFailure_ = keyboard.status().message();
        systemLog_.error(kAppLogSubsystem, kAppLogCategory,
                         keyboardFailure_ + "; leaving the keyboard backlight as it is");
    }
    settings_.marzipelData().set(MarzipelData{nightShift.enabled, keyboardLevel});
    // Placed after the record: a marker must never point at a record older than its run.
    runMarker_.place();

    // Observers hear of the change before the system is touched.
    state_.setIsActive(true);

    if (settings_.enabledFeatures().get().contains(Feature::keyboardBacklight) && keyboard.ok()) {
        systemClient_.setKeyboardBrightness(0.0f);
    }
    if (settings_.enabledFeatures().get().contains(Feature::nightShift) && nightShift.enabled) {
        systemClient_.disableNightShift();
    }
}

void TriggerStateMachine::deactivate() {
    if (!state_.isActive()) {
        log("Doing nothing, was not active");
        return;
    }
    restoreSaved();
    runMarker_.remove();
    state_.setIsActive(false);
}

void TriggerStateMachine::restoreAfterUnexpectedEnd() {
    if (std::exchange(markerChecked_, true)) return;
    const RunMark mark = runMarker_.find();
    if (mark != RunMark::ofEndedProcess && mark != RunMark::ofEarlierBoot) return;
    log("Restoring after an unexpected end");
    systemLog_.error(kAppLogSubsystem, kAppLogCategory,
                     "The last run ended while the keyboard backlight and Night Shift were "
                     "switched off; putting them back from its saved state");
    restoreSaved();
    runMarker_.remove();
}

void TriggerStateMachine::restoreSaved() {
    const MarzipelData saved = settings_.marzipelData().get();
    // Features are read now, not at activation: switching one off while active skips its restore.
    if (settings_.enabledFeatures().get().contains(Feature::keyboardBacklight) &&
        saved.keyboardBacklightValue) {
        systemClient_.setKeyboardBrightness(*saved.keyboardBacklightValue);
    }
    if (settings_.enabledFeatures().get().contains(Feature::nightShift) &&
        saved.nightShiftEnabled) {
        restoreNightShift();
    }
}

void TriggerStateMachine::restoreNightShift() {
    const BlueLightStatus status = systemClient_.nightShiftStatus();
    if (status.mode == BlueLightMode::sunsetToSunrise) {
        // Re-arming the schedule lets the platform decide whether Night Shift shows right now.
        log("Resetting Night Shift to 'sunset to sunrise'");
        systemClient_.setNightShiftMode(BlueLightMode::byHand);
        systemClient_.setNightShiftMode(BlueLightMode::sunsetToSunrise);
    } else if (status.mode == BlueLightMode::customSchedule &&
               isWithinCustomSchedule(clock_.localTime(), status.from, status.to)) {
        log("Re-enabling Night Shift, is within custom schedule");
        systemClient_.enableNightShift();
    } else if (status.mode == BlueLightMode::alwaysOn) {
        // Unlike a filter switched on by hand, this one is the user's lasting choice, and where
        // the desktop has it our "off" may be all that keeps the user from switching it back on.
        log("Re-enabling Night Shift, is always on");
        systemClient_.enableNightShift();
    } else {
        // Night Shift switched on by hand with no schedule is deliberately left off.
        log("Not re-enabling Night Shift");
    }
}

void TriggerStateMachine::log(std::string_view message) const { debugLog(settings_, message); }

}  // namespace marzipel
