#include "platform/linux/sway_window_source.h"

#include <gtest/gtest.h>

#include <csignal>

#include "integration/sway/sway_session.h"
#include "platform/linux/reported_windows.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

/// What the windows answered inside their change handler.
struct Post {
    std::int32_t frontmost = 0;
    std::optional<std::string> frontmostId;
    bool onActiveSpace = true;
};

class SwayWindowSourceTest : public ::testing::Test {
protected:
    SwayWindowSourceTest() {
        entries.add("org.example.Player", "Example Player");
        entries.add("org.example.Viewer", "Viewer", "viewer-app");
        windows.setActiveSpaceChangedHandler([this] {
            const auto app = windows.frontmostApplication();
            posts.push_back({app ? app->processId : 0, app ? app->bundleIdentifier : std::nullopt,
                             windows.isOnActiveSpace()});
        });
        source.start(session.ipcSocket());
    }

    /// Waits for a post made after the last call, with `frontmost` in front; one change may
    /// bring more than one.
    ::testing::AssertionResult posted(pid_t frontmost, bool onActiveSpace) {
        const auto matches = [&](const Post& post) {
            return post.frontmost == frontmost && post.onActiveSpace == onActiveSpace;
        };
        processEventsUntil([&] { return std::any_of(posts.begin() + seen, posts.end(), matches); });
        const auto found = std::find_if(posts.begin() + seen, posts.end(), matches);
        if (found == posts.end())
            return ::testing::AssertionFailure() << "no post with " << frontmost << " in front and "
                                                 << "isOnActiveSpace() " << onActiveSpace;
        matched = *found;
        seen = posts.size();
        return ::testing::AssertionSuccess();
    }

    /// Waits until the running applications are the processes `expected`, in this order.
    ::testing::AssertionResult running(const std::vector<std::int32_t>& expected) {
        std::vector<std::int32_t> processes;
        const auto listed = [&] {
            processes.clear();
            for (const auto& app : windows.runningApplications())
                processes.push_back(app.processId);
            return processes == expected;
        };
        if (processEventsUntil(listed)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << processes.size() << " other applications running";
    }

    SwaySession session;
    FakeDesktopEntries entries;
    SimSystemLog log;
    ReportedWindows windows{entries};
    SwayWindowSource source{windows, log};
    std::vector<Post> posts;
    std::ptrdiff_t seen = 0;
    /// The post `posted` found last.
    Post matched;
};

TEST_F(SwayWindowSourceTest, FollowsFocusAndFullScreenUntilSwayEnds) {
    EXPECT_TRUE(posted(0, true));
    Child player = session.startWindow("org.example.Player");
    EXPECT_TRUE(posted(player.pid(), true));
    Child viewer = session.startWindow("viewer-app");
    EXPECT_TRUE(posted(viewer.pid(), true));
    EXPECT_EQ(matched.frontmostId, "org.example.Viewer");
    EXPECT_TRUE(running({player.pid(), viewer.pid()}));

    session.command("[app_id=org.example.Player] focus");
    EXPECT_TRUE(posted(player.pid(), true));
    EXPECT_EQ(matched.frontmostId, "org.example.Player");
    session.command("[app_id=org.example.Player] fullscreen enable");
    EXPECT_TRUE(posted(player.pid(), false));
    session.command("[app_id=org.example.Player] fullscreen disable");
    EXPECT_TRUE(posted(player.pid(), true));
    // The client asks for itself.
    kill(player.pid(), SIGUSR1);
    EXPECT_TRUE(posted(player.pid(), false));

    player.stop();
    EXPECT_TRUE(posted(viewer.pid(), true));
    EXPECT_TRUE(running({viewer.pid()}));

    session.command("[app_id=viewer-app] fullscreen enable");
    EXPECT_TRUE(posted(viewer.pid(), false));
    EXPECT_TRUE(log.entries.empty());
    session.stop();
    EXPECT_TRUE(posted(0, true));
    EXPECT_TRUE(running({}));
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("Sway"), std::string::npos) << log.entries[0];
}

TEST_F(SwayWindowSourceTest, ListsScratchpadWindowsAndFollowsWorkspaces) {
    Child player = session.startWindow("org.example.Player");
    Child viewer = session.startWindow("viewer-app");
    EXPECT_TRUE(posted(viewer.pid(), true));

    session.command("[app_id=viewer-app] move scratchpad");
    EXPECT_TRUE(posted(player.pid(), true));
    // The scratchpad comes first in Sway's tree.
    EXPECT_TRUE(running({viewer.pid(), player.pid()}));

    session.command("[app_id=org.example.Player] fullscreen enable");
    EXPECT_TRUE(posted(player.pid(), false));
    session.command("workspace 2");
    EXPECT_TRUE(posted(0, true));
    Child other = session.startWindow("org.example.Other");
    EXPECT_TRUE(posted(other.pid(), true));
    session.command("[app_id=org.example.Other] fullscreen enable");
    EXPECT_TRUE(posted(other.pid(), false));
    for (const pid_t window : {player.pid(), other.pid(), player.pid()}) {
        session.command(window == player.pid() ? "workspace 1" : "workspace 2");
        EXPECT_TRUE(posted(window, false));
    }
    EXPECT_TRUE(log.entries.empty());
}

}  // namespace
}  // namespace marzipel
