#include "detection/full_screen_detector.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/sim/sim_application.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_space_monitor.h"

namespace marzipel {
namespace {

struct FullScreenDetectorTest : testing::Test {
    SimSpaceMonitor spaces;
    NotificationCenter center;
    SimSystemLog systemLog;
    SimApplication application{center};
    std::vector<std::string> posts;
    const void* sender = nullptr;
    Subscription full = center.subscribe(kSwitchedToFullScreenAppNotification, nullptr,
                                         [this](const Notification& n) { heard("full", n); });
    Subscription regular = center.subscribe(kSwitchedToRegularSpaceNotification, nullptr,
                                            [this](const Notification& n) { heard("regular", n); });

    void heard(const char* what, const Notification& notification) {
        posts.push_back(what);
        sender = notification.sender;
    }
};

// The posts at launch and on every space change, repeats included, are run by the
// decision-table scenario.
TEST_F(FullScreenDetectorTest, PostsAsItselfAndNotOnceItIsGone) {
    std::optional<FullScreenDetector> detector(std::in_place, spaces, center, systemLog);
    EXPECT_TRUE(posts.empty());
    application.finishLaunching();
    spaces.switchSpace(true);
    EXPECT_EQ(sender, &*detector);
    EXPECT_EQ(posts, (std::vector<std::string>{"regular", "full"}));
    EXPECT_TRUE(systemLog.entries.empty());

    detector.reset();
    spaces.switchSpace(true);
    application.finishLaunching();
    EXPECT_EQ(posts.size(), 2u) << "a gone detector must not post";
}

TEST_F(FullScreenDetectorTest, AgentBundleGetsAWarningButDetectionStillRuns) {
    spaces.agent = true;
    FullScreenDetector named(spaces, center, systemLog);
    spaces.bundleName.reset();
    FullScreenDetector unnamed(spaces, center, systemLog);
    const std::string rest =
        ": full screen detection does not work when LSUIElement is set to YES in Info.plist.";
    EXPECT_EQ(systemLog.entries,
              (std::vector<std::string>{
                  "com.orsavelt/MarzipelApp: Warning to developer of Marzipel" + rest,
                  "com.orsavelt/MarzipelApp: Warning to developer of (null)" + rest}));
    application.finishLaunching();
    EXPECT_EQ(posts.size(), 2u);
}

}  // namespace
}  // namespace marzipel
