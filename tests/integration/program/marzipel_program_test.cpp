// The marzipel program as a user runs it: on an X server with a window manager, a keyboard
// backlight behind UPower (python3-dbusmock) and the real gsd-color for Night Light, each on
// buses of this test's own. The test's own windows play the video players.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>

#include "integration/dbus/gnome_color.h"
#include "integration/dbus/mock_service.h"
#include "integration/program/marzipel_run.h"
#include "integration/x_session.h"

namespace marzipel {
namespace {

using dbustest::colorProperty;
using dbustest::colorServiceUp;
using dbustest::hoursFromNow;
using dbustest::MockService;

using programtest::kOtherApp;
using programtest::kPlayer;
using programtest::scratch;

using programtest::gsettingsKeyfile;
class MarzipelProgramTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        programtest::writeDesktopEntries();
        // Night Light on from an hour ago to an hour from now: on, whatever the time.
        dbustest::writeNightLightScheduleKeys(
            {.enabled = true, .automatic = false, .from = hoursFromNow(-1), .to = hoursFromNow(1)});
        x_ = std::make_unique<XSession>();
        colorDaemon_ = std::make_unique<Child>();
        dbustest::startColorDaemon(*colorDaemon_, "DISPLAY=" + x_->display(), scratch("home"));
    }
    static void TearDownTestSuite() {
        colorDaemon_.reset();
        x_.reset();
    }

    void SetUp() override {
        ASSERT_TRUE(colorServiceUp()) << "gsd-color did not come up";
        ASSERT_TRUE(waitUntil([] { return colorProperty("NightLightActive"); }))
            << "gsd-color did not switch Night Light on for the schedule";
        ASSERT_FALSE(colorProperty("DisabledUntilTomorrow"));
        keysBefore_ = gsettingsKeyfile();
        keyboard_ = programtest::startKeyboardBacklight();
        // A marker left by a test that failed while active would restore at this start.
        std::filesystem::remove_all(scratch("home/runtime/marzipel"));
        marzipel_.start(environment());
    }

    void TearDown() override {
        marzipel_.process().stop();
        keyboard_.reset();
        EXPECT_EQ(gsettingsKeyfile(), keysBefore_) << "the user's Night Light keys changed";
    }

    std::vector<std::string> environment() const {
        return {"DISPLAY=" + x_->display(), "QT_QPA_PLATFORM=xcb",
                "XDG_RUNTIME_DIR=" + scratch("home/runtime")};
    }

    std::vector<int> keyboardLevelsSet() const {
        return programtest::keyboardLevelsSet(*keyboard_);
    }
    bool logHas(const std::string& line) const { return marzipel_.logHas(line); }

    xcb_window_t fullScreenWindowOf(const std::string& instance) {
        XClient& client = x_->client();
        const auto window = client.createWindow({.processId = static_cast<std::uint32_t>(getpid()),
                                                 .instance = instance,
                                                 .className = instance});
        client.activate(window);
        client.setFullScreen(window, true);
        return window;
    }

    static inline std::unique_ptr<XSession> x_;
    static inline std::unique_ptr<Child> colorDaemon_;
    std::string keysBefore_;
    std::unique_ptr<MockService> keyboard_;
    programtest::MarzipelRun marzipel_;
};

TEST_F(MarzipelProgramTest, TriggerPlayerFullScreenDimsAndLiftsNightLightUntilItLeaves) {
    const auto other = fullScreenWindowOf(kOtherApp);
    ASSERT_TRUE(waitUntil([&] { return logHas(std::string(kOtherApp) + " went full screen"); }));
    x_->client().setFullScreen(other, false);

    const auto player = fullScreenWindowOf(kPlayer);
    ASSERT_TRUE(waitUntil([&] { return !keyboardLevelsSet().empty(); }));
    EXPECT_EQ(keyboardLevelsSet(), std::vector<int>{0});
    EXPECT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    x_->client().setFullScreen(player, false);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet().size() == 2; }));
    EXPECT_EQ(keyboardLevelsSet(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(waitUntil([] { return !colorProperty("DisabledUntilTomorrow"); }));
    EXPECT_TRUE(colorProperty("NightLightActive"));
    EXPECT_TRUE(marzipel_.process().running());
}

// An end the program did not ask for leaves both switched off: the supervisor starts it again
// and the new run puts them back. SIGTERM puts them back before the program ends.
TEST_F(MarzipelProgramTest, EndedWhileActiveBothComeBackInTheNextRunOrAtSigterm) {
    const auto player = fullScreenWindowOf(kPlayer);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0}; }));
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    ASSERT_TRUE(waitUntil([&] { return marzipel_.activeRunSaved(); }));
    const pid_t killed = marzipel_.appPid();
    kill(killed, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return logHas("Restoring after an unexpected end"); }, 15s));
    // The player is still full screen: the new run switches both off again.
    EXPECT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0, 2, 0}; }));
    EXPECT_NE(marzipel_.appPid(), killed);
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    kill(marzipel_.process().pid(), SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return !marzipel_.process().running(); }));
    EXPECT_EQ(keyboardLevelsSet(), (std::vector<int>{0, 2, 0, 2}));
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_TRUE(logHas("App quitting, deactivating"));
    x_->client().setFullScreen(player, false);
}

}  // namespace
}  // namespace marzipel
