// The marzipel program in a KDE Plasma Wayland session: a real headless KWin with Night Color
// on, a keyboard backlight behind a stand-in UPower, and the test's own Wayland windows playing
// the video players.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

#include "integration/dbus/mock_service.h"
#include "integration/program/marzipel_run.h"
#include "integration/wayland/kwin_session.h"
#include "platform/linux/dbus_call.h"

namespace marzipel {
namespace {

using programtest::kPlayer;
using waylandtest::KWinSession;

bool nightColorInhibited() {
    const std::optional<QVariant> inhibited =
        dbus::property(QDBusConnection::sessionBus(),
                       {"org.kde.KWin", "/ColorCorrect", "org.kde.kwin.ColorCorrect"}, "inhibited");
    return inhibited && inhibited->toBool();
}

class KWinProgramTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        programtest::writeDesktopEntries();
        kwin_ = std::make_unique<KWinSession>();
    }
    static void TearDownTestSuite() { kwin_.reset(); }

    void SetUp() override {
        kwin_->ensureRunning();
        ASSERT_FALSE(nightColorInhibited());
        keyboard_ = programtest::startKeyboardBacklight();
    }

    void startMarzipel(const std::string& platform = "wayland") {
        marzipel_.start(environment(platform));
        ASSERT_TRUE(waitUntil(
            [] { return dbus::hasOwner(QDBusConnection::sessionBus(), "com.orsavelt.Marzipel"); }));
    }

    void TearDown() override {
        marzipel_.process().stop();
        keyboard_.reset();
    }

    std::vector<std::string> environment(const std::string& platform = "wayland") const {
        std::vector<std::string> result = kwin_->clientEnvironment(platform);
        result.insert(result.end(), {"XDG_SESSION_TYPE=wayland", "XDG_CURRENT_DESKTOP=KDE"});
        return result;
    }
    std::vector<int> keyboardLevelsSet() const {
        return programtest::keyboardLevelsSet(*keyboard_);
    }

    static inline std::unique_ptr<KWinSession> kwin_;
    std::unique_ptr<dbustest::MockService> keyboard_;
    programtest::MarzipelRun marzipel_;
};

// A trigger player in and out of full screen; KWin killed while it is full screen: Qt ends the
// run with its compositor, the run started again has no display and puts the keyboard back,
// and once KWin is back a run of its own shows on it; Marzipel killed, supervisor and all:
// KWin lifts the inhibition by itself.
TEST_F(KWinProgramTest, TriggerPlayerFullScreenInhibitsNightColorUntilItLeavesOrARunEnds) {
    startMarzipel();
    Child player = kwin_->openWindow(kPlayer);
    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0}; }));
    EXPECT_TRUE(waitUntil(nightColorInhibited));
    kill(player.pid(), SIGUSR2);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet().size() == 2; }));
    EXPECT_EQ(keyboardLevelsSet(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(waitUntil([] { return !nightColorInhibited(); }));

    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0, 2, 0}; }));
    ASSERT_TRUE(waitUntil([&] { return marzipel_.activeRunSaved(); }));
    const pid_t firstRun = marzipel_.appPid();
    kwin_->kill();
    EXPECT_TRUE(waitUntil([&] { return keyboardLevelsSet() == std::vector<int>{0, 2, 0, 2}; }));
    ASSERT_TRUE(waitUntil([&] { return marzipel_.appPid() != firstRun; }));
    const pid_t withoutDisplay = marzipel_.appPid();
    kwin_->ensureRunning();
    ASSERT_TRUE(waitUntil([&] {
        const pid_t run = marzipel_.appPid();
        return run != withoutDisplay && run > 0 &&
               dbus::hasOwner(QDBusConnection::sessionBus(), "com.orsavelt.Marzipel");
    }));

    player = kwin_->openWindow(kPlayer);
    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil(
        [&] {
            return keyboardLevelsSet() == std::vector<int>{0, 2, 0, 2, 0};
        },
        15s));
    ASSERT_TRUE(waitUntil(nightColorInhibited));
    kill(-marzipel_.process().pid(), SIGKILL);
    EXPECT_TRUE(waitUntil([] { return !nightColorInhibited(); }));
}

TEST_F(KWinProgramTest, ASecondStartOpensTheSettingsOfTheFirstAndEnds) {
    startMarzipel();
    // The settings window is a Wayland window of the first Marzipel's process: the test hears
    // it in the window list our script sends.
    Child monitor;
    TempFolder folder;
    const std::string list = (folder.path() / "reports").string();
    {
        const int out = ::open(list.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        monitor = Child({"dbus-monitor", "--session",
                         "type=method_call,destination=com.orsavelt.Marzipel,member=ReportWindows"},
                        {}, out);
        ::close(out);
    }
    ASSERT_TRUE(
        waitUntil([&] { return readFile(list).find("NameAcquired") != std::string::npos; }));
    Child second(std::vector<std::string>{MARZIPEL_PROGRAM}, marzipel_.environment(environment()));
    ASSERT_TRUE(waitUntil([&] { return !second.running(); }));
    siginfo_t ended{};
    waitid(P_PID, second.pid(), &ended, WEXITED | WNOWAIT);
    EXPECT_EQ(ended.si_code, CLD_EXITED);
    EXPECT_EQ(ended.si_status, 0);
    EXPECT_TRUE(waitUntil([&] {
        return readFile(list).find("int32 " + std::to_string(marzipel_.appPid())) !=
               std::string::npos;
    })) << "no window of the first Marzipel appeared";
    EXPECT_TRUE(marzipel_.process().running());
}

}  // namespace
}  // namespace marzipel
