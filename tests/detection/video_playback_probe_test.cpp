#include "detection/video_playback_probe.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_workspace.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

PlistValue assertion(PlistValue type) {
    return PlistDictionary{{"AssertionTrueType", std::move(type)}, {"AssertionLevel", 255}};
}

const char* const kDisplay = "PreventUserIdleDisplaySleep";

class VideoPlaybackProbeTest : public ::testing::Test {
protected:
    VideoPlaybackProbeTest() {
        workspace.applications = {{10, "org.videolan.vlc", "VLC", std::nullopt},
                                  {20, "com.colliderli.iina", "IINA", std::nullopt}};
    }

    std::vector<std::int32_t> probe() {
        std::vector<std::int32_t> pids;
        for (const RunningApplication& app : probe_.applicationsPlayingVideo()) {
            pids.push_back(app.processId);
        }
        return pids;
    }
    void setTable(std::map<std::int32_t, PlistValue> table) { assertions.reply = {0, table}; }

    SimConsole console;
    SimPowerAssertions assertions;
    SimWorkspace workspace;
    SimSystemLog systemLog;
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), console};
    VideoPlaybackProbe probe_{assertions, workspace, systemLog, settings};
};

// Which kinds count, a failed query and a daemon's assertion are run by the video-probe
// scenario; replies of any other shape are silently not playing.
TEST_F(VideoPlaybackProbeTest, RepliesOfAnyOtherShapeAreSilentlyNotPlaying) {
    setTable({{10, PlistArray{assertion(1)}}, {20, PlistArray{assertion(kDisplay)}}});
    EXPECT_EQ(probe(), (std::vector<std::int32_t>{20}));
    assertions.reply = {0, std::nullopt};
    EXPECT_TRUE(probe().empty());
    // One stray entry spoils the whole table, even the well-formed processes.
    setTable({{10, PlistArray{assertion(kDisplay)}}, {20, assertion(kDisplay)}});
    EXPECT_TRUE(probe().empty());
    setTable({{10, PlistArray{assertion(kDisplay)}}, {20, PlistArray{PlistValue(kDisplay)}}});
    EXPECT_TRUE(probe().empty());
    EXPECT_TRUE(systemLog.entries.empty());
}

}  // namespace
}  // namespace marzipel
