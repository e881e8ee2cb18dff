// The Sway source against a headless Sway of the test's own; the test's own Qt windows are the
// applications.
#include "platform/linux/windows/sway/sway_window_source.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <QProcess>

#include <csignal>
#include <filesystem>

#include "integration/wayland/reported_windows_wait.h"
#include "platform/sim/sim_basics.h"
#include "support/compositor_session.h"
#include "support/fake_desktop_entries.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

/// A headless Sway in a fresh runtime folder, run as nobody when the test runs as root (Sway
/// refuses root), with its Wayland display and IPC socket ready; throws when they are not.
struct SwaySession {
    SwaySession() {
        const bool root = getuid() == 0;
        const fs::path runtime = folder.path() / "runtime";
        makeRuntimeFolder(runtime, root ? std::optional<uid_t>(65534) : std::nullopt);
        // The clients keep a runtime folder of their own user.
        makeRuntimeFolder(folder.path() / "client-runtime");
        // Sway makes its IPC socket where SWAYSOCK says when nothing is there yet, and its
        // display the first free "wayland-N", in a fresh folder the first of all.
        ipcSocket = (runtime / "sway-ipc.sock").string();
        display = (runtime / "wayland-1").string();
        writeFile(folder / "config", "xwayland disable\n");
        std::vector<std::string> command{SWAY_PROGRAM, "-c", folder / "config"};
        if (root)
            command.insert(command.begin(),
                           {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
        startServer(sway, command,
                    {"XDG_RUNTIME_DIR=" + runtime.string(), "HOME=" + folder.path().string(),
                     "WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman",
                     "WAYLAND_DISPLAY=", "SWAYSOCK=" + ipcSocket, "DISPLAY="},
                    [&] {
                        std::error_code error;
                        return fs::is_socket(display, error) && fs::is_socket(ipcSocket, error);
                    });
    }

    Child startWindow(const std::string& appId) const {
        return startTestWindow(appId,
                               waylandClientEnvironment(folder.path() / "client-runtime", display));
    }

    /// Runs one Sway command through swaymsg, as a user would; throws when it fails.
    void command(const std::string& text) const {
        if (QProcess::execute("swaymsg", {"-s", QString::fromStdString(ipcSocket),
                                          QString::fromStdString(text)}) != 0)
            throw std::runtime_error("swaymsg failed: " + text);
    }

    TempFolder folder;
    std::string display;
    std::string ipcSocket;
    Child sway;
};

TEST(SwayWindowSourceTest, FollowsFocusFullScreenAndWorkspacesUntilSwayEnds) {
    SwaySession session;
    FakeDesktopEntries entries;
    entries.add("org.example.Player", "Example Player");
    entries.add("org.example.Viewer", "Viewer", "viewer-app");
    SimSystemLog log;
    ReportedWindows windows{entries};
    SwayWindowSource source{windows, log};
    // A window focused before the source starts is read from Sway's tree.
    Child player = session.startWindow("org.example.Player");
    source.start(session.ipcSocket);
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    Child viewer = session.startWindow("viewer-app");
    EXPECT_TRUE(waitForFocus(windows, viewer.pid()));
    EXPECT_EQ(windows.frontmostApplication()->bundleIdentifier, "org.example.Viewer");
    EXPECT_TRUE(waitForRunning(windows, {player.pid(), viewer.pid()}));

    session.command("[app_id=org.example.Player] focus");
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    EXPECT_EQ(windows.frontmostApplication()->bundleIdentifier, "org.example.Player");
    // One post for each change, and none for Sway's events that change nothing we report.
    int posts = 0;
    windows.setActiveSpaceChangedHandler([&] { ++posts; });
    session.command("[app_id=org.example.Player] fullscreen enable");
    EXPECT_TRUE(waitForFocus(windows, player.pid(), true));
    session.command("[app_id=org.example.Player] fullscreen disable");
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    // The client asks for itself.
    EXPECT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] { return !windows.isOnActiveSpace(); }));
    EXPECT_EQ(posts, 3);

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
    // The focused full-screen window closes: focus goes to the viewer beside it.
    player.stop();
    EXPECT_TRUE(waitForFocus(windows, viewer.pid()));
    EXPECT_TRUE(waitForRunning(windows, {viewer.pid(), other.pid()}));

    EXPECT_TRUE(log.entries.empty());
    // Sway goes away under the source.
    session.sway.stop();
    EXPECT_TRUE(waitForFocus(windows, 0));
    EXPECT_TRUE(waitForRunning(windows, {}));
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("Sway"), std::string::npos) << log.entries[0];
}

}  // namespace
}  // namespace marzipel
