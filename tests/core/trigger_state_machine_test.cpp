#include "core/trigger_state_machine.h"

#include <gtest/gtest.h>

#include "core_world.h"

namespace marzipel {
namespace {

using Lines = std::vector<std::string>;

TEST(CustomScheduleTest, MinuteBoundsAreInclusiveAndTheFromHourDecidesAlone) {
    struct Case {
        BlueLightStatus::Time from, to;
        LocalTime now;
        bool within;
    };
    const Case cases[] = {
        {{22, 0}, {7, 0}, {23, 15}, true},
        {{22, 0}, {7, 0}, {3, 0}, true},
        {{22, 0}, {7, 0}, {22, 0}, true},
        {{22, 0}, {7, 0}, {7, 0}, true},
        {{22, 0}, {7, 0}, {7, 1}, false},
        {{22, 0}, {7, 0}, {12, 0}, false},
        {{22, 30}, {7, 0}, {22, 29}, false},
        {{22, 30}, {7, 45}, {7, 45}, true},
        // Within one day the rule answers true at almost every hour; kept on purpose.
        {{9, 0}, {17, 0}, {20, 0}, true},
        {{9, 0}, {17, 0}, {8, 0}, true},
        {{9, 0}, {17, 0}, {9, 0}, true},
        {{9, 0}, {17, 30}, {17, 31}, true},
        // When both bounds share the hour, the from-minute decides even if the to-minute agrees.
        {{7, 30}, {7, 45}, {7, 20}, false},
        {{7, 30}, {7, 45}, {7, 50}, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(isWithinCustomSchedule(c.now, c.from, c.to), c.within)
            << c.from.hour << ":" << c.from.minute << "-" << c.to.hour << ":" << c.to.minute
            << " at " << c.now.hour << ":" << c.now.minute;
    }
}

TEST(MarzipelStateTest, WillChangeSeesTheOldValueAndDidChangeTheNew) {
    MarzipelState state;
    Lines seen;
    auto will = state.onWillChange([&](MarzipelState::Field field, bool value) {
        seen.push_back("will " + std::to_string(value) + " was " +
                       std::to_string(state.isActive()) +
                       (field == MarzipelState::Field::isActive ? " isActive" : " trigger"));
    });
    auto did = state.onDidChange([&](MarzipelState::Field, bool) {
        seen.push_back("did " + std::to_string(state.isActive()));
    });
    state.setIsActive(true);
    state.setTriggerValue(!state.triggerValue());
    EXPECT_EQ(seen, (Lines{"will 1 was 0 isActive", "did 1", "will 1 was 1 trigger", "did 1"}));
}

using TriggerStateMachineTest = CoreWorld;

TEST_F(TriggerStateMachineTest, CapturesBeforeAnyChangeAndRestoresFromTheRecord) {
    trigger("org.videolan.vlc");
    runApp(10, "org.videolan.vlc", "VLC");
    brightness.keyboard = 0.7f;
    brightness.status = {true, 0, {}, {}};
    startLogging();

    fullScreen(10);
    EXPECT_EQ(events, (Lines{"data brightnessForKeyboard 1", "data getBlueLightStatus",
                             "state isActive true", "tray Active for VLC",
                             "app setBrightness 0.0 1", "app setEnabled false"}));
    EXPECT_EQ(settings.marzipelData().get(), (MarzipelData{true, 0.7f}));

    events.clear();
    regularSpace();
    // Night Shift switched on by hand, with no schedule, stays off.
    EXPECT_EQ(events, (Lines{"app setBrightness 0.7 1", "app getBlueLightStatus",
                             "state isActive false", "tray Waiting for triggers..."}));
    EXPECT_EQ(logLines(), (Lines{"org.videolan.vlc went full screen",
                                 "org.videolan.vlc went full screen but is not playing video",
                                 "Setting keyboard brightness to 0.0", "Disabling Night Shift",
                                 "Left full screen", "Setting keyboard brightness to 0.7",
                                 "Not re-enabling Night Shift"}));
}

TEST_F(TriggerStateMachineTest, DecisionTable) {
    trigger("a");
    trigger("b");
    trigger("Unknown app");
    runApp(1, "a", "A");
    runApp(2, "b", "B");
    runApp(3, "c", "C");
    runApp(4, std::nullopt, std::nullopt);
    startLogging();

    app();
    spaces.switchSpace(true);  // nothing frontmost: silent
    fullScreen(3);             // not a trigger, inactive
    fullScreen(1);             // activates
    fullScreen(2);             // second trigger app: the first one's record is kept
    fullScreen(3);             // passes to a non-trigger app: restores
    fullScreen(4);             // no bundle identifier, matched as "Unknown app"
    EXPECT_EQ(
        logLines(),
        (Lines{"c went full screen", "a went full screen",
               "a went full screen but is not playing video", "Setting keyboard brightness to 0.0",
               "b went full screen", "full-screen switch between two enabled apps, doing nothing",
               "c went full screen",
               "full-screen switch from enabled to disabled app, deactivating",
               "Setting keyboard brightness to 1.0", "Unknown app went full screen",
               "Unknown app went full screen but is not playing video",
               "Setting keyboard brightness to 0.0"}));
    EXPECT_TRUE(app().state().isActive());
}

TEST_F(TriggerStateMachineTest, NightShiftIsPutBackByItsModeAtRestoreTime) {
    struct Case {
        BlueLightStatus status;
        LocalTime now;
        Lines calls;
        std::string log;
    };
    const Case cases[] = {
        // Re-arming the schedule without setEnabled lets the platform decide.
        {{true, 1, {}, {}},
         {12, 0},
         {"app getBlueLightStatus", "app setMode 0", "app setMode 1"},
         "Resetting Night Shift to 'sunset to sunrise'"},
        {{true, 2, {22, 0}, {7, 0}},
         {23, 15},
         {"app getBlueLightStatus", "app setEnabled true"},
         "Enabling Night Shift"},
        {{true, 2, {22, 0}, {7, 0}},
         {7, 1},
         {"app getBlueLightStatus"},
         "Not re-enabling Night Shift"},
        {{true, 3, {22, 0}, {7, 0}},
         {23, 0},
         {"app getBlueLightStatus"},
         "Not re-enabling Night Shift"},
        // Off at activation: nothing disabled, nothing read back, whatever the mode.
        {{false, 1, {}, {}}, {12, 0}, {}, "Setting keyboard brightness to 1.0"},
    };
    trigger("vlc");
    runApp(1, "vlc", "VLC");
    startLogging();
    for (const Case& c : cases) {
        brightness.status = c.status;
        brightness.keyboard = 1.0f;
        clock.time = c.now;
        fullScreen(1);
        events.clear();
        regularSpace();
        Lines expected{"app setBrightness 1.0 1"};
        expected.insert(expected.end(), c.calls.begin(), c.calls.end());
        expected.insert(expected.end(), {"state isActive false", "tray Waiting for triggers..."});
        EXPECT_EQ(events, expected) << "mode " << c.status.mode;
        EXPECT_EQ(logLines().back(), c.log) << "mode " << c.status.mode;
    }
}

TEST_F(TriggerStateMachineTest, FeaturesAreReadWhenRestoringNotWhenActivating) {
    trigger("vlc");
    runApp(1, "vlc", "VLC");
    brightness.keyboard = 0.4f;
    brightness.status = {true, 2, {22, 0}, {7, 0}};
    clock.time = {23, 0};
    settings.enabledFeatures().set({Feature::nightShift});
    fullScreen(1);
    EXPECT_EQ(events.back(), "app setEnabled false");
    EXPECT_EQ(settings.marzipelData().get(), (MarzipelData{true, 0.4f}));

    settings.enabledFeatures().set({Feature::keyboardBacklight});
    events.clear();
    regularSpace();
    EXPECT_EQ(events, (Lines{"app setBrightness 0.4 1", "state isActive false",
                             "tray Waiting for triggers..."}));
}

}  // namespace
}  // namespace marzipel
