#include "detection/full_screen_detector.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/sim/sim_application.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_space_monitor.h"

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

}  // namespace
}  // namespace marzipel
