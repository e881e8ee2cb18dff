#include "platform/linux/process/restart_policy.h"

#include <gtest/gtest.h>

namespace marzipel {
namespace {

using namespace std::chrono_literals;

const RunEnd kCrashed{.reportedRunning = true};
const RunEnd kFailedToStart{};

// A first start that fails and a clean end pass the end on; after that, failures count.
TEST(RestartPolicyTest, StartsAgainThreeTimesWithinAMinuteCountingRunsThatFailToStart) {
    RestartPolicy policy;
    const RestartPolicy::TimePoint start;
    EXPECT_EQ(policy.afterRun(kFailedToStart, start), AfterRun::end);
    EXPECT_EQ(policy.afterRun({.exitedCleanly = true, .reportedRunning = true}, start),
              AfterRun::end);
    EXPECT_FALSE(policy.restarted());
    EXPECT_EQ(policy.afterRun({.displayIsBack = true}, start), AfterRun::startAgain);
    EXPECT_EQ(policy.afterRun(kCrashed, start), AfterRun::startAgainAfterFailure);
    EXPECT_TRUE(policy.restarted());
    // Started again while the compositor that died still took connections.
    EXPECT_EQ(policy.afterRun(kFailedToStart, start + 1s), AfterRun::startAgainAfterFailure);
    EXPECT_EQ(policy.afterRun(kCrashed, start + 50s), AfterRun::startAgainAfterFailure);
    EXPECT_EQ(policy.afterRun(kCrashed, start + 59s), AfterRun::giveUp);
    // The first failure is more than a minute old.
    EXPECT_EQ(policy.afterRun(kCrashed, start + 61s), AfterRun::startAgainAfterFailure);
    EXPECT_EQ(policy.afterRun(kCrashed, start + 61s), AfterRun::giveUp);
}

}  // namespace
}  // namespace marzipel
