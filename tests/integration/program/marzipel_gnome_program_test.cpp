// The marzipel program as a user runs it in a GNOME Wayland session: on a headless GNOME Shell
// with Marzipel's extension, a keyboard backlight behind a stand-in UPower and the real gsd-color
// for Night Light. The test's own Qt window plays the video player.
#include <gtest/gtest.h>

#include <csignal>

#include "integration/dbus/gnome_color.h"
#include "integration/gnome/gnome_shell_session.h"
#include "integration/program/marzipel_run.h"

namespace marzipel {
namespace {

using dbustest::colorProperty;
using dbustest::gnomeShell;
using dbustest::hoursFromNow;

TEST(MarzipelGnomeProgramTest, TriggerPlayerFullScreenDimsAndLiftsNightLightUntilItLeaves) {
    // Night Light on from an hour ago to an hour from now: on, whatever the time.
    dbustest::writeNightLightScheduleKeys(
        {.enabled = true, .automatic = false, .from = hoursFromNow(-1), .to = hoursFromNow(1)});
    std::vector<std::string> environment = gnomeShell().clientEnvironment();
    Child colorDaemon;
    ASSERT_TRUE(dbustest::startColorDaemon(colorDaemon, gnomeShell().displayVariable(),
                                           dbustest::scratchFolder() / "home"));
    const std::string keysBefore = programtest::gsettingsKeyfile();
    environment.insert(environment.end(),
                       {"XDG_SESSION_TYPE=wayland", "XDG_CURRENT_DESKTOP=GNOME"});
    const auto keyboard = programtest::startKeyboardBacklight();
    programtest::MarzipelRun run;
    run.start(environment);
    const auto levelsSet = [&] { return programtest::keyboardLevelsSet(*keyboard); };

    Child player = gnomeShell().startWindow(programtest::kPlayer);
    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] { return !levelsSet().empty(); }));
    EXPECT_EQ(levelsSet(), std::vector<int>{0});
    EXPECT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR2, [&] { return levelsSet().size() == 2; }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(waitUntil([] { return !colorProperty("DisabledUntilTomorrow"); }));
    EXPECT_TRUE(colorProperty("NightLightActive"));
    EXPECT_TRUE(run.process().running());
    EXPECT_EQ(programtest::gsettingsKeyfile(), keysBefore) << "the user's keys changed";
}

}  // namespace
}  // namespace marzipel
