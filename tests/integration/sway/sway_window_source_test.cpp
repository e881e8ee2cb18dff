#include "platform/linux/sway_window_source.h"

#include <gtest/gtest.h>

#include <csignal>

#include "integration/sway/sway_session.h"
#include "integration/wayland/reported_windows_wait.h"
#include "platform/sim/sim_basics.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

TEST(SwayWindowSourceTest, FollowsFocusFullScreenScratchpadAndWorkspacesUntilSwayEnds) {
    SwaySession session;
    FakeDesktopEntries entries;
    entries.add("org.example.Player", "Example Player");
    entries.add("org.example.Viewer", "Viewer", "viewer-app");
    SimSystemLog log;
    ReportedWindows windows{entries};
    SwayWindowSource source{windows, log};
    source.start(session.ipcSocket());

    Child player = session.startWindow("org.example.Player");
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    Child viewer = session.startWindow("viewer-app");
    EXPECT_TRUE(waitForFocus(windows, viewer.pid()));
    EXPECT_EQ(windows.frontmostApplication()->bundleIdentifier, "org.example.Viewer");
    EXPECT_TRUE(waitForRunning(windows, {player.pid(), viewer.pid()}));

    session.command("[app_id=org.example.Player] focus");
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    EXPECT_EQ(windows.frontmostApplication()->bundleIdentifier, "org.example.Player");
    session.command("[app_id=org.example.Player] fullscreen enable");
    EXPECT_TRUE(waitForFocus(windows, player.pid(), true));
    session.command("[app_id=org.example.Player] fullscreen disable");
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    // The client asks for itself.
    kill(player.pid(), SIGUSR1);
    EXPECT_TRUE(waitForFocus(windows, player.pid(), true));

    // The scratchpad comes first in Sway's tree.
    session.command("[app_id=viewer-app] move scratchpad");
    EXPECT_TRUE(waitForRunning(windows, {viewer.pid(), player.pid()}));
    session.command("workspace 2");
    EXPECT_TRUE(waitForFocus(windows, 0));
    Child other = session.startWindow("org.example.Other");
    EXPECT_TRUE(waitForFocus(windows, other.pid()));
    session.command("[app_id=org.example.Other] fullscreen enable");
    EXPECT_TRUE(waitForFocus(windows, other.pid(), true));
    for (const pid_t window : {player.pid(), other.pid(), player.pid()}) {
        session.command(window == player.pid() ? "workspace 1" : "workspace 2");
        EXPECT_TRUE(waitForFocus(windows, window, true));
    }
    // A window closing out of sight.
    other.stop();
    EXPECT_TRUE(waitForRunning(windows, {viewer.pid(), player.pid()}));

    EXPECT_TRUE(log.entries.empty());
    session.stop();
    EXPECT_TRUE(waitForFocus(windows, 0));
    EXPECT_TRUE(waitForRunning(windows, {}));
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("Sway"), std::string::npos) << log.entries[0];
}

}  // namespace
}  // namespace marzipel
