#include <gtest/gtest.h>

#include <optional>

#include "detection/full_screen_detector.h"
#include "detection/video_playback_probe.h"
#include "platform/sim/sim_application.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_space_monitor.h"
#include "platform/sim/sim_workspace.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

// The posts at launch and on every space change, repeats included, are run by the
// decision-table scenario.
TEST(FullScreenDetectorTest, PostsAsItselfAndNotOnceItIsGone) {
    SimSpaceMonitor spaces;
    NotificationCenter center;
    SimSystemLog systemLog;
    SimApplication application{center};
    using Post = std::pair<std::string, const void*>;
    std::vector<Post> posts;
    const auto listen = [&](std::string name, const char* what) {
        return center.subscribe(std::move(name), nullptr, [&posts, what](const Notification& n) {
            posts.emplace_back(what, n.sender);
        });
    };
    const Subscription full = listen(kSwitchedToFullScreenAppNotification, "full");
    const Subscription regular = listen(kSwitchedToRegularSpaceNotification, "regular");

    std::optional<FullScreenDetector> detector(std::in_place, spaces, center, systemLog);
    EXPECT_TRUE(posts.empty());
    application.finishLaunching();
    spaces.switchSpace(true);
    EXPECT_EQ(posts, (std::vector<Post>{{"regular", &*detector}, {"full", &*detector}}));
    EXPECT_TRUE(systemLog.entries.empty());

    detector.reset();
    spaces.switchSpace(true);
    application.finishLaunching();
    EXPECT_EQ(posts.size(), 2u) << "a gone detector must not post";
}

PlistValue assertion(PlistValue type) {
    return PlistDictionary{{"AssertionTrueType", std::move(type)}, {"AssertionLevel", 255}};
}

// Which kinds count, a failed query and a daemon's assertion are run by the video-probe
// scenario; replies of any other shape are silently not playing.
TEST(VideoPlaybackProbeTest, RepliesOfAnyOtherShapeAreSilentlyNotPlaying) {
    SimConsole console;
    SimPowerAssertions assertions;
    SimWorkspace workspace;
    workspace.applications = {{10, "org.videolan.vlc", "VLC", std::nullopt},
                              {20, "com.colliderli.iina", "IINA", std::nullopt}};
    SimSystemLog systemLog;
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), console};
    VideoPlaybackProbe probe{assertions, workspace, systemLog, settings};
    const auto playing = [&](AssertionsByProcess table) {
        assertions.table = std::move(table);
        std::vector<std::int32_t> pids;
        for (const RunningApplication& app : probe.applicationsPlayingVideo())
            pids.push_back(app.processId);
        return pids;
    };
    const PlistValue display = assertion("PreventUserIdleDisplaySleep");

    EXPECT_EQ(playing({{{10, PlistArray{assertion(1)}}, {20, PlistArray{display}}}}),
              (std::vector<std::int32_t>{20}));
    // One stray entry spoils the whole table, even the well-formed processes.
    EXPECT_TRUE(playing({{{10, PlistArray{display}}, {20, display}}}).empty());
    EXPECT_TRUE(
        playing({{{10, PlistArray{display}}, {20, PlistArray{"PreventUserIdleDisplaySleep"}}}})
            .empty());
    EXPECT_TRUE(systemLog.entries.empty());
}

}  // namespace
}  // namespace marzipel
