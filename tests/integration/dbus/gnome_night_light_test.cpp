#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "gnome_color.h"
#include "private_bus.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

TEST(NightLightScheduleKeys, FractionalHoursBecomeTimesOfDay) {
    using Time = BlueLightStatus::Time;
    EXPECT_EQ(timeOfFractionalHours(20.5), (Time{20, 30}));
    EXPECT_EQ(timeOfFractionalHours(21.0 + 10.0 / 60), (Time{21, 10}));
    EXPECT_EQ(timeOfFractionalHours(23.99), (Time{23, 59}));
    EXPECT_EQ(timeOfFractionalHours(23.999), (Time{0, 0}));
    EXPECT_EQ(timeOfFractionalHours(24.0), (Time{0, 0}));
    EXPECT_EQ(timeOfFractionalHours(-1.0), (Time{23, 0}));
    EXPECT_EQ(timeOfFractionalHours(std::numeric_limits<double>::quiet_NaN()), (Time{0, 0}));
}

// The real gnome-settings-daemon colour plugin, on a private X server, this program's session
// bus and its GSettings keyfile.
TEST(GnomeNightLight, GoesThroughDisabledUntilTomorrowFollowsTheKeysAndOutlivesTheDaemon) {
    if (!std::filesystem::exists(GSD_COLOR_PROGRAM)) GTEST_SKIP() << "gsd-color is missing";
    TempFolder home;
    Child xServer, daemon;
    const std::string display = "DISPLAY=:" + startAndReadLine(xServer, {XVFB_PROGRAM, "-displayfd",
                                                                         "1", "-nolisten", "tcp"});
    // On from an hour ago to an hour from now: the schedule says "on" whatever the time.
    const double from = hoursFromNow(-1), to = hoursFromNow(1);
    writeNightLightScheduleKeys({.enabled = true, .automatic = false, .from = from, .to = to});
    ASSERT_TRUE(startColorDaemon(daemon, display, home.path())) << "gsd-color did not come up";
    const auto keyfile = [] { return readFile(scratch("config/glib-2.0/settings/keyfile")); };
    const std::string keysBefore = keyfile();
    SimSystemLog log;
    auto service = createWithoutKeyboard(log);
    ASSERT_TRUE(service->hasBlueLightClient());
    EXPECT_EQ(service->getBlueLightStatus(),
              (BlueLightStatus{true, 2, timeOfFractionalHours(from), timeOfFractionalHours(to)}));

    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_FALSE(service->getBlueLightStatus().enabled);
    service->setEnabled(true);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    // The restore of a sunset-to-sunrise schedule: "no schedule", then the schedule again.
    service->setEnabled(false);
    service->setMode(0);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setMode(1);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_EQ(keyfile(), keysBefore);
    EXPECT_TRUE(log.entries.empty());

    service->setEnabled(false);
    daemon.stop();
    ASSERT_TRUE(waitUntil([] { return !colorServiceUp(); }));
    EXPECT_FALSE(service->getBlueLightStatus().enabled);
    service->setEnabled(true);
    ASSERT_EQ(log.entries.size(), 2u);
    EXPECT_NE(log.entries[1].find("Could not switch Night Light"), std::string::npos);
    ASSERT_TRUE(startColorDaemon(daemon, display, home.path())) << "gsd-color did not come back";
    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setEnabled(true);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));

    writeNightLightScheduleKeys({.enabled = true, .automatic = true, .from = 20.5, .to = 6.25});
    EXPECT_EQ(service->getBlueLightStatus().mode, 1);
    EXPECT_EQ(service->getBlueLightStatus().from, BlueLightStatus::Time{});
    writeNightLightScheduleKeys({.enabled = false, .automatic = false, .from = 20.5, .to = 6.25});
    ASSERT_TRUE(waitUntil([] { return !colorProperty("NightLightActive"); }));
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
}

}  // namespace
}  // namespace marzipel::dbustest
