// The marzipel program as a user runs it: on an X server with a window manager, a keyboard
// backlight behind UPower (python3-dbusmock), the real gsd-color for Night Light and the real
// gsd-power, each on buses of this test's own. The test's own windows play the video players.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "integration/dbus/gnome_color.h"
#include "integration/program/marzipel_run.h"
#include "integration/x_session.h"

namespace marzipel {
namespace {

using dbustest::colorProperty;
using dbustest::colorServiceUp;
using dbustest::hoursFromNow;

using programtest::kPlayer;
using programtest::scratch;

/// Starts `marzipel` on `x`, then puts a window of the trigger player in full screen there.
xcb_window_t startWithPlayerInFullScreen(XSession& x, programtest::MarzipelRun& marzipel) {
    marzipel.start({"DISPLAY=" + x.display(), "QT_QPA_PLATFORM=xcb",
                    "XDG_RUNTIME_DIR=" + scratch("home/runtime")});
    const auto player = x.client().createWindow({.processId = static_cast<std::uint32_t>(getpid()),
                                                 .instance = kPlayer,
                                                 .className = kPlayer});
    x.client().activate(player);
    x.client().setFullScreen(player, true);
    return player;
}

// The whole life of a run: the trigger player in and out of full screen, an end the program did
// not ask for (its supervisor starts it again and the new run puts both back) and
// SIGTERM, which puts both back before the program ends. The user's Night Light keys stay as
// they were. Then a power cut while active: the runtime folder is gone with the boot, and the
// level the system kept at shutdown may be 0, so the first run of the next boot puts both back.
// Its keyboard reads fail: without a level to put back, the keyboard is left alone.
TEST(MarzipelProgramTest, TriggerPlayerSwitchesBothOffUntilItLeavesOrTheRunEnds) {
    programtest::writePlayerEntry();
    // Night Light on from an hour ago to an hour from now: on, whatever the time.
    dbustest::writeNightLightScheduleKeys(
        {.enabled = true, .automatic = false, .from = hoursFromNow(-1), .to = hoursFromNow(1)});
    XSession x;
    Child colorDaemon;
    ASSERT_TRUE(dbustest::startColorDaemon(colorDaemon, "DISPLAY=" + x.display(), scratch("home")))
        << "gsd-color did not come up with Night Light on for the schedule";
    const std::string keysBefore = programtest::gsettingsKeyfile();
    const auto keyboard = dbustest::startKeyboardBacklight();
    const auto levelsSet = [&] { return dbustest::keyboardLevelsSet(*keyboard); };
    // Night Light shows again a moment after it is no longer disabled; a film started before
    // would find it off, and rightly leave it off.
    const auto nightLightShows = [] {
        return !colorProperty("DisabledUntilTomorrow") && colorProperty("NightLightActive");
    };
    programtest::MarzipelRun marzipel;
    const auto player = startWithPlayerInFullScreen(x, marzipel);
    ASSERT_TRUE(waitUntil([&] { return !levelsSet().empty(); }));
    EXPECT_EQ(levelsSet(), std::vector<int>{0});
    EXPECT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));
    x.client().setFullScreen(player, false);
    ASSERT_TRUE(waitUntil([&] { return levelsSet().size() == 2; }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2}));
    EXPECT_TRUE(waitUntil(nightLightShows));

    x.client().setFullScreen(player, true);
    ASSERT_TRUE(waitUntil([&] { return levelsSet() == std::vector<int>{0, 2, 0}; }));
    ASSERT_TRUE(waitUntil([&] { return marzipel.activeRunSaved(); }));
    const pid_t killed = marzipel.appPid();
    kill(killed, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return marzipel.logHas("Restoring after an unexpected end"); }));
    // The player is still full screen: the new run switches both off again.
    EXPECT_TRUE(waitUntil([&] { return levelsSet() == std::vector<int>{0, 2, 0, 2, 0}; }));
    EXPECT_NE(marzipel.appPid(), killed);
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));

    kill(marzipel.process().pid(), SIGTERM);
    ASSERT_TRUE(waitUntil([&] { return !marzipel.process().running(); }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2, 0, 2, 0, 2}));
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_TRUE(marzipel.logHas("App quitting, deactivating"));
    EXPECT_EQ(programtest::gsettingsKeyfile(), keysBefore) << "the user's Night Light keys changed";

    marzipel.start({"DISPLAY=" + x.display(), "QT_QPA_PLATFORM=xcb",
                    "XDG_RUNTIME_DIR=" + scratch("home/runtime")});
    ASSERT_TRUE(waitUntil([&] { return levelsSet().size() == 7 && marzipel.activeRunSaved(); }));
    kill(-marzipel.process().pid(), SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return !marzipel.process().running(); }));
    x.client().setFullScreen(player, false);
    const auto marker = marzipel.home() / "state/marzipel/active";
    const std::string mark = readFile(marker);
    writeFile(marker, "0f8c2a4e-earlier-boot" + mark.substr(mark.find(' ')));
    dbustest::failKeyboardReads(*keyboard);
    const std::string nextBoot = scratch("home/runtime-next-boot");
    std::filesystem::create_directories(nextBoot);
    std::filesystem::permissions(nextBoot, std::filesystem::perms::owner_all);
    marzipel.start(
        {"DISPLAY=" + x.display(), "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=" + nextBoot});
    ASSERT_TRUE(waitUntil([&] { return marzipel.logHas("Restoring after an unexpected end"); }));
    EXPECT_TRUE(waitUntil([&] { return levelsSet().size() == 8 && levelsSet().back() == 2; }));
    EXPECT_TRUE(waitUntil(nightLightShows));
    x.client().setFullScreen(player, true);
    ASSERT_TRUE(waitUntil([] { return colorProperty("DisabledUntilTomorrow"); }));
    x.client().setFullScreen(player, false);
    ASSERT_TRUE(waitUntil([] { return !colorProperty("DisabledUntilTomorrow"); }));
    EXPECT_EQ(levelsSet().size(), 8u);
}

/// gsd-power's keyboard level in percent; nothing while it does not answer for one.
std::optional<int> powerKeyboardPercent() {
    const Result<QVariant> value =
        dbus::property(QDBusConnection::sessionBus(),
                       {"org.gnome.SettingsDaemon.Power", "/org/gnome/SettingsDaemon/Power",
                        "org.gnome.SettingsDaemon.Power.Keyboard"},
                       QStringLiteral("Brightness"));
    return value.ok() ? std::optional(value.value().toInt()) : std::nullopt;
}

// gsd-power keeps its own copy of the keyboard level: dimming for an idle session and undimming
// afterwards must not light the keyboard in the middle of the film. Beside UPower it needs
// logind, and Mutter's idle monitor and GNOME's session manager for a session that goes idle.
TEST(MarzipelProgramTest, KeyboardGoesThroughGnomePowerAndStaysOffThroughAnIdleDim) {
    if (!std::filesystem::exists(GSD_POWER_PROGRAM)) GTEST_SKIP() << "gsd-power is missing";
    programtest::writePlayerEntry();
    XSession x;
    const auto keyboard = dbustest::startKeyboardBacklight();
    const auto levelsSet = [&] { return dbustest::keyboardLevelsSet(*keyboard); };
    dbustest::MockService logind("logind", "org.freedesktop.login1", true);
    dbustest::MockService mutter("mutter", "org.gnome.Mutter.IdleMonitor", false);
    dbustest::MockService session("gnome_session_manager", "org.gnome.SessionManager", false);
    // Idle watches other than the dim would suspend or blank; the test only dims.
    GSettings* settings = g_settings_new("org.gnome.settings-daemon.plugins.power");
    g_settings_set_string(settings, "sleep-inactive-ac-type", "nothing");
    g_settings_sync();
    g_object_unref(settings);
    Child power({GSD_POWER_PROGRAM}, {"DISPLAY=" + x.display(), "HOME=" + scratch("home")});
    ASSERT_TRUE(waitUntil([] { return powerKeyboardPercent() == 67; }, 20s))
        << "gsd-power did not answer for the keyboard";
    programtest::MarzipelRun marzipel;
    const auto player = startWithPlayerInFullScreen(x, marzipel);
    ASSERT_TRUE(waitUntil([&] { return !levelsSet().empty(); }));
    EXPECT_EQ(powerKeyboardPercent(), 0);

    const QString core = QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core");
    const auto idleMonitor = [&](const char* method) {
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            "org.gnome.Mutter.IdleMonitor", core, "org.gnome.Mutter.IdleMonitor.Test", method));
    };
    // gsd-power has dimmed once it watches for the user's return.
    const std::size_t watches = mutter.calls(core, "AddUserActiveWatch").size();
    idleMonitor("BecomeIdle");
    ASSERT_TRUE(waitUntil([&] {
        return mutter.calls(core, "AddUserActiveWatch").size() > watches;
    })) << "gsd-power did not dim";
    idleMonitor("BecomeActive");
    EXPECT_EQ(powerKeyboardPercent(), 0);
    EXPECT_EQ(levelsSet(), std::vector<int>{0});

    x.client().setFullScreen(player, false);
    ASSERT_TRUE(waitUntil([&] { return levelsSet().size() == 2; }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2}));
    EXPECT_EQ(powerKeyboardPercent(), 67);
}

}  // namespace
}  // namespace marzipel
