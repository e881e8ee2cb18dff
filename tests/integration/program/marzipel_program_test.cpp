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
#include "integration/x_session.h"

namespace marzipel {
namespace {

using dbustest::colorProperty;
using dbustest::colorServiceUp;
using dbustest::hoursFromNow;
using dbustest::MockService;

const QString kKeyboard = QStringLiteral("/org/freedesktop/UPower/KbdBacklight");
constexpr char kPlayer[] = "marzipel-test-player";
constexpr char kOtherApp[] = "marzipel-test-other";

/// A path under the test program's scratch folder, where its buses and its settings live.
std::string scratch(const std::string& relative) {
    return (dbustest::scratchFolder() / relative).string();
}

std::string gsettingsKeyfile() { return readFile(scratch("config/glib-2.0/settings/keyfile")); }

void writeDesktopEntry(const std::string& id, const std::string& name) {
    writeFile(scratch("data/applications/" + id + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n");
}

class MarzipelProgramTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        writeDesktopEntry(kPlayer, "Test Player");
        writeDesktopEntry(kOtherApp, "Other App");
        // Night Light on from an hour ago to an hour from now: on, whatever the time.
        dbustest::writeNightLightScheduleKeys(
            {.enabled = true, .automatic = false, .from = hoursFromNow(-1), .to = hoursFromNow(1)});
        x_ = std::make_unique<XSession>();
        colorDaemon_ = std::make_unique<Child>();
        dbustest::startColorDaemon(*colorDaemon_, x_->display(), scratch("home"));
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
        keyboard_ = std::make_unique<MockService>("upower_kbd_backlight", "org.freedesktop.UPower",
                                                  true, R"({"max": 3, "level": 2})");
        writeFile(scratch("config/marzipel/com.orsavelt.Marzipel.plist"),
                  R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
<key>welcomeScreenShown</key><true/>
<key>debugLoggingEnabled</key><true/>
<key>enabledApps</key><array><string>{"id":"marzipel-test-player","name":"Test Player"}</string></array>
<key>enabledFeatures</key><array><string>{"keyboardBacklight":{}}</string><string>{"nightShift":{}}</string></array>
</dict></plist>
)");
        // A marker left by a test that failed while active would restore at this start.
        std::filesystem::remove_all(scratch("home/runtime/marzipel"));
        startMarzipel();
        // The debug log is opened once the event loop runs, when the X11 watch is in place.
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(debugLog_); }, 15s))
            << "marzipel did not finish launching";
    }

    void TearDown() override {
        marzipel_.stop();
        keyboard_.reset();
        EXPECT_EQ(gsettingsKeyfile(), keysBefore_) << "the user's Night Light keys changed";
    }

    void startMarzipel() {
        const auto documents = home_.path() / "Documents";
        std::filesystem::create_directories(documents);
        debugLog_ = (documents / "Marzipel_debug.log").string();
        marzipel_ = Child(
            {MARZIPEL_PROGRAM},
            {"DISPLAY=" + x_->display(), "QT_QPA_PLATFORM=xcb", "HOME=" + home_.path().string(),
             "XDG_DATA_HOME=" + scratch("data"), "XDG_DATA_DIRS=/usr/local/share:/usr/share",
             "XDG_RUNTIME_DIR=" + scratch("home/runtime")});
    }

    std::vector<int> keyboardLevelsSet() const {
        std::vector<int> levels;
        for (const auto& arguments : keyboard_->calls(kKeyboard, "SetBrightness"))
            levels.push_back(arguments.value(0).toInt());
        return levels;
    }

    bool logHas(const std::string& line) const {
        return readFile(debugLog_).find(line + "\n") != std::string::npos;
    }

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
    TempFolder home_;
    std::string keysBefore_;
    std::string debugLog_;
    std::unique_ptr<MockService> keyboard_;
    Child marzipel_;
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
    EXPECT_TRUE(marzipel_.running());
}

// SIGTERM puts both back before the program ends; SIGKILL cannot, so the next start does.
TEST_F(MarzipelProgramTest, EndedWhileActiveBothComeBackAtSigtermOrAtTheStartAfterSigkill) {
    const auto player = fullScreenWindowOf(kPlayer);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0}; }));
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    // The record is saved a moment after the switch; a kill before that finds the last one.
    ASSERT_TRUE(waitUntil([] {
        return readFile(scratch("config/marzipel/com.orsavelt.Marzipel.plist"))
                   .find("marzipelData") != std::string::npos;
    }));
    kill(marzipel_.pid(), SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return !marzipel_.running(); }));
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    x_->client().setFullScreen(player, false);
    startMarzipel();
    ASSERT_TRUE(waitUntil([&] { return logHas("Restoring after an unexpected end"); }, 15s));
    EXPECT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0, 2}; }));
    EXPECT_TRUE(waitUntil([] { return !colorProperty("DisabledUntilTomorrow"); }));

    x_->client().setFullScreen(player, true);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0, 2, 0}; }));
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));
    kill(marzipel_.pid(), SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return !marzipel_.running(); }));
    EXPECT_EQ(keyboardLevelsSet(), (std::vector<int>{0, 2, 0, 2}));
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_TRUE(logHas("App quitting, deactivating"));
    x_->client().setFullScreen(player, false);
}

}  // namespace
}  // namespace marzipel
