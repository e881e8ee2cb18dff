#include "core/marzipel_app.h"

#include <gtest/gtest.h>

#include "app/sim/sim_platform.h"
#include "core/trigger_state_machine.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct NoWelcomeWindow final : WelcomeWindowPresenter {
    void showWelcomeWindow() override {}
};

// A night inside and a night outside are run by the night-shift-restore scenario; these are the
// bounds.
TEST(CustomScheduleTest, MinuteBoundsAreInclusiveAndTheFromHourDecidesAlone) {
    struct Case {
        BlueLightStatus::Time from, to;
        LocalTime now;
        bool within;
    };
    const Case cases[] = {
        {{22, 0}, {7, 0}, {22, 0}, true},
        {{22, 0}, {7, 0}, {12, 0}, false},
        {{22, 30}, {7, 0}, {22, 29}, false},
        {{22, 30}, {7, 45}, {7, 45}, true},
        // Within one day the rule answers true at almost every hour; kept on purpose.
        {{9, 0}, {17, 0}, {20, 0}, true},
        {{9, 0}, {17, 30}, {17, 31}, true},
        // When both bounds share the hour, the from-minute decides even if the to-minute agrees.
        {{7, 30}, {7, 45}, {7, 20}, false},
        {{7, 30}, {7, 45}, {7, 50}, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(isWithinCustomSchedule(c.now, c.from, c.to), c.within) << "case " << &c - cases;
}

// The marker that lets a run put back what an earlier run left off: restored once, at launch,
// only for a run that has ended, also with the machine, and placed exactly while active.
TEST(UnexpectedEndTest, RestoresTheSavedRecordOnceAtLaunchWhenTheMarkingRunHasEnded) {
    for (const RunMark found :
         {RunMark::ofEndedProcess, RunMark::ofEarlierBoot, RunMark::ofRunningProcess}) {
        SimPlatform sim;
        NoWelcomeWindow welcome;
        SettingsManager settings(std::make_shared<SimPreferencesStore>(), sim.console);
        settings.marzipelData().set(MarzipelData{true, 0.5f});
        sim.brightness.keyboard = 0.0f;
        sim.runMarker.mark = found;
        MarzipelApp app(sim.platform(settings, welcome));

        sim.notificationCenter.post(kApplicationDidFinishLaunchingNotification, &sim.application);
        sim.notificationCenter.post(kApplicationDidFinishLaunchingNotification, &sim.application);
        const bool ended = found != RunMark::ofRunningProcess;
        EXPECT_EQ(sim.brightness.keyboard, ended ? 0.5f : 0.0f);
        EXPECT_EQ(sim.systemLog.entries.size(), ended ? 1u : 0u);
        EXPECT_EQ(sim.runMarker.mark, ended ? RunMark::none : found);

        sim.runMarker.mark = RunMark::none;
        app.stateMachine().activate("mpv");
        EXPECT_EQ(sim.runMarker.mark, RunMark::ofRunningProcess);
        app.stateMachine().deactivate();
        EXPECT_EQ(sim.runMarker.mark, RunMark::none);
    }
}

// A level that could not be read is neither saved nor switched off: the film's end must not
// leave the keyboard dark. Why is said once, not at every film, until a read succeeds.
TEST(CaptureTest, AFailedKeyboardReadSavesNoLevelLeavesTheKeyboardAloneAndIsSaidOnce) {
    SimPlatform sim;
    NoWelcomeWindow welcome;
    SettingsManager settings(std::make_shared<SimPreferencesStore>(), sim.console);
    sim.brightness.keyboard = 0.75f;
    MarzipelApp app(sim.platform(settings, welcome));
    const std::string said =
        "com.orsavelt/MarzipelApp: No keyboard backlight found; leaving the "
        "keyboard backlight as it is";

    const std::optional<std::string> none = "No keyboard backlight found";
    for (const auto& failure : {none, none, std::optional<std::string>(), none}) {
        sim.brightness.keyboardReadFailure = failure;
        app.stateMachine().activate("mpv");
        EXPECT_EQ(settings.marzipelData().get().keyboardBacklightValue.has_value(), !failure);
        app.stateMachine().deactivate();
        EXPECT_EQ(sim.brightness.keyboard, 0.75f);
    }
    EXPECT_EQ(sim.systemLog.entries, (std::vector<std::string>{said, said}));
}

}  // namespace
}  // namespace marzipel
