#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>

#include "gnome_color.h"
#include "support/temp_folder.h"
#include "test_world.h"

namespace marzipel::dbustest {
namespace {

std::string keyfile() {
    return readFile((scratchFolder() / "config/glib-2.0/settings/keyfile").string());
}

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

/// The real gnome-settings-daemon colour plugin, on a private X server, this program's session
/// bus and its GSettings keyfile.
class GnomeNightLightTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (!std::filesystem::exists(GSD_COLOR_PROGRAM)) return;
        home_ = std::make_unique<TempFolder>();
        xServer_ = std::make_unique<Child>();
        display_ = ":" + startAndReadLine(*xServer_, {XVFB_PROGRAM, "-displayfd", "1", "-nolisten",
                                                      "tcp", "-screen", "0", "640x480x24"});
    }
    static void TearDownTestSuite() {
        xServer_.reset();
        home_.reset();
    }

    void SetUp() override {
        if (!xServer_) GTEST_SKIP() << GSD_COLOR_PROGRAM << " is not installed";
        // On from an hour ago to an hour from now: the schedule says "on" whatever the time.
        writeNightLightScheduleKeys(
            {.enabled = true, .automatic = false, .from = hoursFromNow(-1), .to = hoursFromNow(1)});
        startDaemon();
    }

    void startDaemon() {
        ASSERT_TRUE(startColorDaemon(daemon_, "DISPLAY=" + display_, home_->path()))
            << "gsd-color did not come up with Night Light on for the schedule";
    }

    void stopDaemon() {
        daemon_.stop();
        ASSERT_TRUE(waitUntil([] { return !colorServiceUp(); }));
    }

    static inline std::unique_ptr<TempFolder> home_;
    static inline std::unique_ptr<Child> xServer_;
    static inline std::string display_;
    Child daemon_;
    SimSystemLog log_;
};

TEST_F(GnomeNightLightTest, OffAndOnGoThroughDisabledUntilTomorrowAndLeaveTheUsersKeys) {
    auto service = createWithoutKeyboard(log_);
    ASSERT_TRUE(service->hasBlueLightClient());
    const std::string keysBefore = keyfile();

    BlueLightStatus status = service->getBlueLightStatus();
    EXPECT_TRUE(status.enabled);
    EXPECT_EQ(status.mode, 2);
    EXPECT_EQ(status.from, timeOfFractionalHours(hoursFromNow(-1)));
    EXPECT_EQ(status.to, timeOfFractionalHours(hoursFromNow(1)));

    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_TRUE(colorProperty("NightLightActive"));
    EXPECT_FALSE(service->getBlueLightStatus().enabled);

    service->setEnabled(true);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_TRUE(service->getBlueLightStatus().enabled);

    // The restore of a sunset-to-sunrise schedule: "no schedule", then the schedule again.
    service->setEnabled(false);
    service->setMode(0);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setMode(1);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));

    EXPECT_EQ(keyfile(), keysBefore);
    EXPECT_TRUE(log_.entries.empty());
}

TEST_F(GnomeNightLightTest, ModeFollowsTheUsersKeys) {
    auto service = createWithoutKeyboard(log_);

    writeNightLightScheduleKeys({.enabled = true, .automatic = true, .from = 20.5, .to = 6.25});
    EXPECT_EQ(service->getBlueLightStatus().mode, 1);
    EXPECT_EQ(service->getBlueLightStatus().from, BlueLightStatus::Time{});

    writeNightLightScheduleKeys({.enabled = false, .automatic = false, .from = 20.5, .to = 6.25});
    ASSERT_TRUE(waitUntil([] { return !colorProperty("NightLightActive"); }));
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
}

TEST_F(GnomeNightLightTest, VanishingDaemonIsSurvivedAndSaysWhy) {
    auto service = createWithoutKeyboard(log_);
    service->setEnabled(false);
    stopDaemon();

    EXPECT_FALSE(service->getBlueLightStatus().enabled);
    service->setEnabled(true);
    ASSERT_EQ(log_.entries.size(), 2u);
    EXPECT_NE(log_.entries[1].find("Could not switch Night Light"), std::string::npos);

    startDaemon();
    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setEnabled(true);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
}

}  // namespace
}  // namespace marzipel::dbustest
