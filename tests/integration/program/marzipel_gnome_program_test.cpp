// The marzipel program as a user runs it in a GNOME Wayland session: on a headless GNOME Shell
// with Marzipel's extension and a keyboard backlight behind a stand-in UPower; Night Light goes
// through the same client as on X11, where the program test runs it. The test's own Qt window
// plays the video player. No tray runs: Marzipel's menu is in the top bar.
#include <gtest/gtest.h>

#include <csignal>

#include "integration/gnome/gnome_shell_session.h"
#include "integration/program/marzipel_run.h"
#include "platform/linux/windows/gnome/gnome_shell_windows.h"

namespace marzipel {
namespace {

using dbustest::gnomeShell;

std::string topBarMenu(const std::string& statusLine) {
    return R"([")" + statusLine + R"(","Configure","","About","Quit"])";
}

/// Chooses `label` in Marzipel's menu in the top bar, as a click does.
void chooseInTopBar(const std::string& label) {
    gnomeShell().eval(std::string("Main.panel.statusArea['") + kGnomeShellExtensionUuid +
                      "'].menu._getMenuItems().find(item => item.label.text === '" + label +
                      "').activate(null)");
}

const std::string kSettingsWindow =
    "global.display.list_all_windows().find(window => window.get_title() === 'Marzipel Settings')";

TEST(MarzipelGnomeProgramTest, TriggerPlayerFullScreenDimsUntilItLeavesAndTheTopBarMenuFollows) {
    std::vector<std::string> environment = gnomeShell().clientEnvironment();
    const std::string keysBefore = programtest::gsettingsKeyfile();
    environment.insert(environment.end(),
                       {"XDG_SESSION_TYPE=wayland", "XDG_CURRENT_DESKTOP=GNOME"});
    const auto keyboard = dbustest::startKeyboardBacklight();
    programtest::MarzipelRun run;
    run.start(environment);
    EXPECT_TRUE(waitUntil([] {
        return gnomeShell().topBarMenu() == topBarMenu("Waiting for triggers...");
    })) << gnomeShell().topBarMenu();
    chooseInTopBar("Configure");
    EXPECT_TRUE(
        waitUntil([] { return gnomeShell().eval(kSettingsWindow + " !== undefined") == "true"; }));
    // Closed again, so that the player gets the focus when it comes.
    gnomeShell().eval(kSettingsWindow + ".delete(global.get_current_time())");
    EXPECT_TRUE(
        waitUntil([] { return gnomeShell().eval(kSettingsWindow + " === undefined") == "true"; }));
    const auto levelsSet = [&] { return dbustest::keyboardLevelsSet(*keyboard); };

    Child player = gnomeShell().startWindow(programtest::kPlayer);
    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] { return !levelsSet().empty(); }));
    EXPECT_EQ(levelsSet(), std::vector<int>{0});
    EXPECT_TRUE(waitUntil([] {
        return gnomeShell().topBarMenu() == topBarMenu("Active for Test Player");
    })) << gnomeShell().topBarMenu();

    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR2, [&] { return levelsSet().size() == 2; }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2}));

    ASSERT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] { return levelsSet().size() == 3; }));
    chooseInTopBar("Quit");
    EXPECT_TRUE(waitUntil([&] { return !run.process().running(); }));
    EXPECT_EQ(levelsSet(), (std::vector<int>{0, 2, 0, 2}));
    EXPECT_TRUE(waitUntil([] { return gnomeShell().topBarMenu() == "null"; }));
    EXPECT_EQ(programtest::gsettingsKeyfile(), keysBefore) << "the user's keys changed";
}

}  // namespace
}  // namespace marzipel
