#include "platform/linux/x11_space_monitor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <span>
#include <utility>

#include "platform/linux/x11_workspace.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/fake_desktop_entries.h"
#include "x_session.h"

namespace marzipel {
namespace {

/// What the monitor answered inside its handler, and which window was active then.
struct Post {
    xcb_window_t activeWindow;
    bool onActiveSpace;
    bool toldFullScreenLikely;
    bool toldOnArrival;
    std::uint32_t likelyActive;
};

class X11SpaceMonitorTest : public ::testing::Test {
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

    XSession session;
    XClient& client = session.client();
    SimSystemLog log;
    X11SpaceMonitor monitor{log, session.display()};
    std::vector<Post> posts;
    std::size_t settled = 0;
    bool fullScreenLikely = false;
    std::uint32_t likelyActive = XCB_WINDOW_NONE;
};

TEST_F(X11SpaceMonitorTest, FollowsFullScreenOfTheActiveWindowAndTheDesktop) {
    EXPECT_TRUE(monitor.isOnActiveSpace());
    xcb_window_t player = XCB_WINDOW_NONE;
    act([&] {
        player = client.createWindow({.processId = 4242});
        client.activate(player);
    });
    EXPECT_TRUE(postedWhile(player, true));

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

TEST_F(X11SpaceMonitorTest, FollowsAWindowWhoseIdCameBackWithANewClient) {
    // X hands a new client the id range of the one that left last, so its first window gets
    // the id the departed one's first window had.
    xcb_window_t departed = XCB_WINDOW_NONE;
    {
        XClient player(session.display());
        // openbox may focus the new window before it is asked to: any post since it was made.
        act([&] {
            departed = player.createWindow({.processId = 4242});
            player.activate(departed);
        });
        EXPECT_TRUE(postedWhile(departed, true));
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
    FakeDesktopEntries entries;
    const auto front = X11Workspace(entries, session.display()).frontmostApplication();
    ASSERT_TRUE(front.has_value());
    EXPECT_EQ(front->processId, 4343);
}

/// A display number that no server is using now.
std::string deadDisplay() {
    for (int number = 4000;; ++number) {
        const auto n = std::to_string(number);
        if (!std::filesystem::exists("/tmp/.X" + n + "-lock") &&
            !std::filesystem::exists("/tmp/.X11-unix/X" + n))
            return ":" + n;
    }
}

TEST_F(X11SpaceMonitorTest, SaysOnceThatTheServerWentAwayOrNeverAnsweredAndAnswersTrue) {
    const auto player = client.createWindow({.processId = 4242});
    client.activate(player);
    client.setFullScreen(player, true);
    settle();
    ASSERT_FALSE(monitor.isOnActiveSpace());
    FakeDesktopEntries entries;
    X11Workspace workspace(entries, session.display());
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

    const auto display = deadDisplay();
    SimSystemLog absentLog;
    X11SpaceMonitor absent(absentLog, display);
    int calls = 0;
    absent.setActiveSpaceChangedHandler([&] { ++calls; });
    QCoreApplication::processEvents();
    EXPECT_TRUE(absent.isOnActiveSpace());
    ASSERT_EQ(absentLog.entries.size(), 1u);
    EXPECT_NE(absentLog.entries.front().find(display), std::string::npos);
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace marzipel
