// The marzipel program in a KDE Plasma Wayland session: a real headless KWin with Night Color
// (Plasma 5) or Night Light (Plasma 6) always on, a keyboard backlight behind a stand-in UPower,
// and the test's own Wayland windows playing the video players.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "integration/program/marzipel_run.h"
#include "integration/wayland/kwin_session.h"
#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

using programtest::kPlayer;
using waylandtest::KWinSession;

bool nightColorInhibited() {
    // Plasma 6's Night Light, else Plasma 5's Night Color.
    for (const dbus::Address& service :
         {dbus::Address{"org.kde.KWin", "/org/kde/KWin/NightLight", "org.kde.KWin.NightLight"},
          dbus::Address{"org.kde.KWin", "/ColorCorrect", "org.kde.kwin.ColorCorrect"}}) {
        const auto inhibited = dbus::property(QDBusConnection::sessionBus(), service, "inhibited");
        if (inhibited.ok()) return inhibited.value().toBool();
    }
    return false;
}

bool marzipelOnBus() {
    return dbus::hasOwner(QDBusConnection::sessionBus(), "com.orsavelt.Marzipel");
}

// A second start opens the first one's settings and ends; a trigger player in and out of full
// screen; KWin killed while it is full screen: Qt ends the run with its compositor, the run
// started again has no display and puts the keyboard back, and once KWin is back a run of its
// own shows on it; the full-screen player closing; Marzipel killed, supervisor and all: KWin
// lifts the inhibition by itself.
TEST(KWinProgramTest, TriggerPlayerInhibitsNightColorUntilItLeavesOrARunEndsOneMarzipelAtATime) {
    programtest::writePlayerEntry();
    KWinSession kwin;
    ASSERT_FALSE(nightColorInhibited());
    const auto keyboard = dbustest::startKeyboardBacklight();
    const auto levelsSet = [&] { return dbustest::keyboardLevelsSet(*keyboard); };
    std::vector<std::string> environment = kwin.clientEnvironment();
    environment.insert(environment.end(), {"XDG_SESSION_TYPE=wayland", "XDG_CURRENT_DESKTOP=KDE"});
    programtest::MarzipelRun marzipel;
    marzipel.start(environment);
    ASSERT_TRUE(waitUntil(marzipelOnBus));

    // The settings window is a Wayland window of the first Marzipel's process: the test hears
    // it in the window list our script sends.
    TempFolder folder;
    const std::string list = (folder.path() / "reports").string();
    const int out = ::open(list.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    Child monitor({"dbus-monitor", "--session",
                   "type=method_call,destination=com.orsavelt.Marzipel,member=ReportWindows"},
                  {}, out);
    ::close(out);
    ASSERT_TRUE(
        waitUntil([&] { return readFile(list).find("NameAcquired") != std::string::npos; }));
    Child second(std::vector<std::string>{MARZIPEL_PROGRAM}, marzipel.environment(environment));
    ASSERT_TRUE(waitUntil([&] { return !second.running(); }));
    siginfo_t ended{};
    waitid(P_PID, second.pid(), &ended, WEXITED | WNOWAIT);
    EXPECT_EQ(ended.si_code, CLD_EXITED);
    EXPECT_EQ(ended.si_status, 0);
    const pid_t firstRun = marzipel.appPid();
    EXPECT_TRUE(waitUntil([&] {
        return readFile(list).find("int32 " + std::to_string(firstRun)) != std::string::npos;
    })) << "no window of the first Marzipel appeared";

    Child player = kwin.openWindow(kPlayer);
    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil([&] { return levelsSet() == std::vector<int>{0}; }));
    EXPECT_TRUE(waitUntil(nightColorInhibited));
    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR2, [&] { return levelsSet().size() == 2; }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(waitUntil([] { return !nightColorInhibited(); }));

    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] {
        return levelsSet() == std::vector<int>{0, 2, 0};
    }));
    ASSERT_TRUE(waitUntil([&] { return marzipel.activeRunSaved(); }));
    kwin.kill();
    EXPECT_TRUE(waitUntil([&] { return levelsSet() == std::vector<int>{0, 2, 0, 2}; }));
    ASSERT_TRUE(waitUntil([&] { return marzipel.appPid() != firstRun; }));
    const pid_t withoutDisplay = marzipel.appPid();
    kwin.ensureRunning();
    ASSERT_TRUE(waitUntil([&] {
        const pid_t run = marzipel.appPid();
        return run != withoutDisplay && run > 0 && marzipelOnBus();
    }));

    player = kwin.openWindow(kPlayer);
    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil([&] { return levelsSet() == std::vector<int>{0, 2, 0, 2, 0}; }, 15s));
    ASSERT_TRUE(waitUntil(nightColorInhibited));
    // The full-screen player closes.
    player.stop();
    EXPECT_TRUE(waitUntil([&] { return levelsSet().size() == 6 && levelsSet().back() == 2; }));
    EXPECT_TRUE(waitUntil([] { return !nightColorInhibited(); }));

    player = kwin.openWindow(kPlayer);
    kill(player.pid(), SIGUSR1);
    ASSERT_TRUE(waitUntil(nightColorInhibited));
    kill(-marzipel.process().pid(), SIGKILL);
    EXPECT_TRUE(waitUntil([] { return !nightColorInhibited(); }));
}

}  // namespace
}  // namespace marzipel
