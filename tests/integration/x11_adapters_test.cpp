// The X11 adapters against a real X server and window manager (Xvfb and openbox).
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <span>
#include <tuple>
#include <utility>

#include "platform/linux/windows/x11/x11_space_monitor.h"
#include "platform/linux/windows/x11/x11_workspace.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/fake_desktop_entries.h"
#include "x_session.h"

namespace marzipel {
namespace {

// Above the kernel's largest process id, so that no real process answers for them.
constexpr std::int32_t kTotem = 5000001, kFlatpakVlc = 5000002, kFlatpakCelluloid = 5000003,
                       kSnapMpv = 5000004, kFirefox = 5000005, kSmplayer = 5000006,
                       kUnknown = 5000007, kTrayHelper = 5000008, kPalette = 5000009;

using Summary = std::tuple<std::int32_t, std::optional<std::string>, std::optional<std::string>,
                           std::optional<std::string>, ActivationPolicy>;

Summary summary(const RunningApplication& app) {
    return {app.processId, app.bundleIdentifier, app.localizedName, app.bundlePath,
            app.activationPolicy};
}

std::string entryPath(const std::string& id) {
    return "/usr/share/applications/" + id + ".desktop";
}

/// What the monitor answered inside its handler, and which window was active then.
struct Post {
    xcb_window_t activeWindow;
    bool onActiveSpace;
    bool toldFullScreenLikely;
    bool toldOnArrival;
    std::uint32_t likelyActive;
};

class X11Test : public ::testing::Test {
protected:
    void SetUp() override {
        monitor.setChangeArrivingHandler([this](std::uint32_t window) { likelyActive = window; });
        monitor.setFullScreenLikelyHandler([this] { fullScreenLikely = true; });
        monitor.setActiveSpaceChangedHandler([this] {
            const bool toldOnArrival = std::exchange(fullScreenLikely, false);
            const bool onActiveSpace = monitor.isOnActiveSpace();
            const bool told = std::exchange(fullScreenLikely, false) || toldOnArrival;
            posts.push_back(
                {client.x().activeWindow(), onActiveSpace, told, toldOnArrival, likelyActive});
        });
    }

    /// Lets the monitor read everything the server sent it so far.
    void settle() {
        client.x().sync();
        QCoreApplication::processEvents();
    }

    /// Waits for a post made after the last settle() while `window` was active.
    ::testing::AssertionResult postedWhile(xcb_window_t window, bool onActiveSpace) {
        const auto found = [&] {
            return std::ranges::any_of(std::span(posts).subspan(settled), [&](const Post& post) {
                return post.activeWindow == window && post.onActiveSpace == onActiveSpace;
            });
        };
        if (processEventsUntil(found)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "no post with window " << window << " active and isOnActiveSpace() "
               << onActiveSpace << " among " << posts.size() - settled << " new posts";
    }

    void act(const std::function<void()>& action) {
        settle();
        settled = posts.size();
        action();
    }

    /// The frontmost application, or one of process id 0 when there is none.
    Summary frontmost() {
        return summary(workspace.frontmostApplication().value_or(RunningApplication{}));
    }

    void writeProcFile(std::int32_t processId, const std::string& name, std::string_view text) {
        writeFile(proc / (std::to_string(processId) + "/" + name), text);
    }

    XSession session;
    XClient& client = session.client();
    SimSystemLog log;
    X11SpaceMonitor monitor{log, session.display()};
    FakeDesktopEntries entries;
    TempFolder proc;
    X11Workspace workspace{entries, session.display(), proc.path().string()};
    std::vector<Post> posts;
    std::size_t settled = 0;
    bool fullScreenLikely = false;
    std::uint32_t likelyActive = XCB_WINDOW_NONE;
};

TEST_F(X11Test, FollowsFullScreenOfTheActiveWindowAndTheDesktop) {
    EXPECT_TRUE(monitor.isOnActiveSpace());
    // Focus moving between regular windows changes nothing that is posted.
    const auto player = client.createWindow({.processId = 4242});
    const auto viewer = client.createWindow({.processId = 4141});
    for (const auto window : {player, viewer, player}) {
        client.activate(window);
        ASSERT_TRUE(processEventsUntil([&] { return client.x().activeWindow() == window; }));
    }
    settle();
    EXPECT_TRUE(posts.empty());

    act([&] { client.setFullScreen(player, true); });
    EXPECT_TRUE(postedWhile(player, false));
    EXPECT_FALSE(monitor.isOnActiveSpace());

    act([&] { client.switchToDesktop(1); });
    EXPECT_TRUE(postedWhile(XCB_WINDOW_NONE, true));

    act([&] {
        client.switchToDesktop(0);
        client.activate(player);
    });
    EXPECT_TRUE(postedWhile(player, false));

    // Every move between full-screen windows posts, though the answer stays false.
    const auto other = client.createWindow({.processId = 4343});
    client.activate(other);
    client.setFullScreen(other, true);
    for (const auto window : {player, other, player}) {
        act([&] { client.activate(window); });
        EXPECT_TRUE(postedWhile(window, false));
    }
    // The window now watched is the player again: its own state change must be seen.
    act([&] { client.setFullScreen(player, false); });
    EXPECT_TRUE(postedWhile(player, true));
    settle();
    EXPECT_EQ(posts.size(), settled + 1) << "leaving full screen is one change";
    EXPECT_TRUE(monitor.isOnActiveSpace());
    EXPECT_TRUE(std::ranges::all_of(posts, [](const Post& post) {
        return post.onActiveSpace || post.toldFullScreenLikely;
    })) << "told before each answer of false";
    EXPECT_TRUE(std::ranges::any_of(posts, [](const Post& post) {
        return !post.onActiveSpace && post.toldOnArrival;
    })) << "told as the state change arrived";
    EXPECT_TRUE(std::ranges::any_of(posts, [&](const Post& post) {
        return post.activeWindow == player && post.likelyActive == player;
    })) << "handed the window that had become active";
    EXPECT_TRUE(log.entries.empty());
}

TEST_F(X11Test, FollowsAWindowWhoseIdCameBackWithANewClient) {
    // X hands a new client the id range of the one that left last, so its first window gets
    // the id the departed one's first window had.
    xcb_window_t departed = XCB_WINDOW_NONE;
    {
        XClient player(session.display());
        departed = player.createWindow({.processId = 4242});
        player.activate(departed);
        ASSERT_TRUE(processEventsUntil([&] { return client.x().activeWindow() == departed; }));
        settle();
    }
    // openbox leaves _NET_ACTIVE_WINDOW naming the departed window.
    XClient player(session.display());
    const auto window = player.createWindow({.processId = 4343});
    ASSERT_EQ(window, departed);
    act([&] { player.activate(window); });
    act([&] { player.setFullScreen(window, true); });
    EXPECT_TRUE(postedWhile(window, false));
    EXPECT_FALSE(monitor.isOnActiveSpace());
    act([&] { player.setFullScreen(window, false); });
    EXPECT_TRUE(postedWhile(window, true));
    EXPECT_EQ(std::get<0>(frontmost()), 4343);
}

TEST_F(X11Test, SaysOnceThatTheServerWentAwayAndAnswersTrue) {
    const auto player = client.createWindow({.processId = 4242});
    client.activate(player);
    client.setFullScreen(player, true);
    settle();
    ASSERT_FALSE(monitor.isOnActiveSpace());
    ASSERT_TRUE(workspace.frontmostApplication().has_value());

    session.stopServer();
    ASSERT_TRUE(processEventsUntil([&] { return !log.entries.empty(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(log.entries.size(), 1u);
    EXPECT_EQ(log.entries.front().rfind("com.orsavelt/MarzipelApp: ", 0), 0u)
        << log.entries.front();
    EXPECT_TRUE(monitor.isOnActiveSpace());
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_TRUE(workspace.runningApplications().empty());
    EXPECT_EQ(workspace.runningApplication(4242), std::nullopt);
}

TEST_F(X11Test, FindsEachApplicationsEntryInOrderOfTrustAndOneEntryPerProcess) {
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    entries.add("org.gnome.Totem", "Videos");
    entries.add("vlc", "VLC (system)");
    entries.add("org.videolan.VLC", "VLC media player");
    entries.add("mpv_mpv", "mpv (snap)");
    entries.add("io.mpv.Mpv", "mpv Media Player", "mpv");
    entries.add("mpv", "mpv (by name)");
    entries.add("firefox-esr", "Firefox ESR");
    entries.add("org.example.Smplayer", "SMPlayer", "Smplayer");
    entries.add("smplayer", "SMPlayer (by name)");

    client.createWindow({.processId = kTotem,
                         .instance = "totem",
                         .className = "Totem",
                         .gtkApplicationId = "org.gnome.Totem"});
    writeProcFile(kFlatpakVlc, "root/.flatpak-info",
                  "[Instance]\nname=wrong\n\n[Application]\nname=org.videolan.VLC\nruntime=x\n");
    writeProcFile(kFlatpakVlc, "cgroup", "0::/user.slice/app-flatpak-org.other.App-9.scope\n");
    client.createWindow({.processId = kFlatpakVlc, .instance = "vlc", .className = "vlc"});
    writeProcFile(kFlatpakCelluloid, "cgroup",
                  "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                  "app-flatpak-io.github.celluloid_player.Celluloid-1234.scope\n");
    client.createWindow(
        {.processId = kFlatpakCelluloid, .instance = "celluloid", .className = "Celluloid"});
    writeProcFile(kSnapMpv, "cgroup",
                  "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                  "snap.mpv.mpv-0f4d2c8e-3b1a-4c5d-9e6f-7a8b9c0d1e2f.scope\n");
    const auto player =
        client.createWindow({.processId = kSnapMpv, .instance = "mpv", .className = "mpv"});
    client.createWindow(
        {.processId = kFirefox, .instance = "Navigator", .className = "firefox-esr"});
    client.createWindow({.processId = kSmplayer, .instance = "smplayer", .className = "Smplayer"});
    client.createWindow(
        {.processId = kUnknown, .instance = "ghostplayer", .className = "GhostPlayer"});
    // Windows that stay out of the taskbar: a process with none in it is an accessory, and one
    // that shows a taskbar window later is named after that.
    client.createWindow({.processId = kTrayHelper, .skipTaskbar = true});
    client.createWindow(
        {.processId = kSnapMpv, .instance = "mpv", .className = "mpv", .skipTaskbar = true});
    client.createWindow({.processId = kPalette, .utility = true});
    client.createWindow({.processId = kPalette, .skipTaskbar = true});
    client.createWindow({.instance = "nopid", .className = "NoPid"});
    const auto late = client.createWindow(
        {.processId = kTrayHelper, .instance = "helper", .className = "Helper"});

    std::vector<Summary> running;
    for (const auto& app : workspace.runningApplications()) running.push_back(summary(app));
    const auto regular = ActivationPolicy::regular;
    const std::vector<Summary> expected{
        {kTotem, "org.gnome.Totem", "Videos", entryPath("org.gnome.Totem"), regular},
        {kFlatpakVlc, "org.videolan.VLC", "VLC media player", entryPath("org.videolan.VLC"),
         regular},
        {kFlatpakCelluloid, "io.github.celluloid_player.Celluloid", "Celluloid", std::nullopt,
         regular},
        {kSnapMpv, "mpv_mpv", "mpv (snap)", entryPath("mpv_mpv"), regular},
        {kFirefox, "firefox-esr", "Firefox ESR", entryPath("firefox-esr"), regular},
        {kSmplayer, "org.example.Smplayer", "SMPlayer", entryPath("org.example.Smplayer"), regular},
        {kUnknown, std::nullopt, "GhostPlayer", std::nullopt, regular},
        {kTrayHelper, std::nullopt, "Helper", std::nullopt, regular},
        {kPalette, std::nullopt, "TestWindow", std::nullopt, ActivationPolicy::accessory},
    };
    EXPECT_EQ(running, expected);
    const auto helper = workspace.runningApplication(kTrayHelper);
    ASSERT_TRUE(helper);
    EXPECT_EQ(helper->localizedName, "Helper") << "named after its taskbar window";
    EXPECT_EQ(workspace.runningApplication(kPalette + 1), std::nullopt) << "no window";

    client.activate(player);
    EXPECT_EQ(frontmost(), expected[3]);
    client.activate(late);
    EXPECT_EQ(frontmost(), expected[7]);
}

TEST_F(X11Test, AnswerReadAheadServesTheRestOfTheTurn) {
    entries.add("io.mpv.Mpv", "mpv Media Player", "mpv");
    // One window: activating several in a row lets openbox hand the focus back and forth.
    const auto player =
        client.createWindow({.processId = kSnapMpv, .instance = "mpv", .className = "mpv"});
    client.activate(player);
    const auto setProcessId = [&](std::uint32_t processId) {
        xcb_change_property(client.x().get(), XCB_PROP_MODE_REPLACE, player,
                            client.x().ewmh()._NET_WM_PID, XCB_ATOM_CARDINAL, 32, 1, &processId);
        client.x().sync();
    };
    const auto frontmostId = [&] { return std::get<0>(frontmost()); };
    const Summary asked = frontmost();
    ASSERT_EQ(std::get<0>(asked), kSnapMpv);

    workspace.readAhead(player);
    EXPECT_EQ(frontmost(), asked) << "read from the guessed window alone";
    setProcessId(kTrayHelper);
    EXPECT_EQ(frontmostId(), kSnapMpv) << "later in the same turn";
    QCoreApplication::processEvents();
    EXPECT_EQ(frontmostId(), kTrayHelper) << "the turn has ended";

    workspace.readAhead(player);
    EXPECT_EQ(frontmostId(), kTrayHelper);
    setProcessId(kSnapMpv);
    workspace.readAhead(player + 1000);
    EXPECT_EQ(frontmostId(), kSnapMpv) << "a wrong guess, of a window that does not exist";
}

}  // namespace
}  // namespace marzipel
