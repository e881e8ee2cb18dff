#include "core/trigger_state_machine.h"

#include "core/marzipel_state.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marzipel {
namespace {

using Lines = std::vector<std::string>;

TEST(CustomScheduleTest, MinuteBoundsAreInclusiveAndTheFromHourDecidesAlone) {
    struct Case {
        BlueLightStatus::Time from, to;
        LocalTime now;
        bool within;
    };
    const Case cases[] = {
        {{22, 0}, {7, 0}, {23, 15}, true},
        {{22, 0}, {7, 0}, {3, 0}, true},
        {{22, 0}, {7, 0}, {22, 0}, true},
        {{22, 0}, {7, 0}, {7, 0}, true},
        {{22, 0}, {7, 0}, {7, 1}, false},
        {{22, 0}, {7, 0}, {12, 0}, false},
        {{22, 30}, {7, 0}, {22, 29}, false},
        {{22, 30}, {7, 45}, {7, 45}, true},
        // Within one day the rule answers true at almost every hour; kept on purpose.
        {{9, 0}, {17, 0}, {20, 0}, true},
        {{9, 0}, {17, 0}, {8, 0}, true},
        {{9, 0}, {17, 0}, {9, 0}, true},
        {{9, 0}, {17, 30}, {17, 31}, true},
        // When both bounds share the hour, the from-minute decides even if the to-minute agrees.
        {{7, 30}, {7, 45}, {7, 20}, false},
        {{7, 30}, {7, 45}, {7, 50}, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(isWithinCustomSchedule(c.now, c.from, c.to), c.within)
            << c.from.hour << ":" << c.from.minute << "-" << c.to.hour << ":" << c.to.minute
            << " at " << c.now.hour << ":" << c.now.minute;
    }
}

TEST(MarzipelStateTest, WillChangeSeesTheOldValueAndDidChangeTheNew) {
    MarzipelState state;
    Lines seen;
    auto will = state.onWillChange([&](MarzipelState::Field field, bool value) {
        seen.push_back("will " + std::to_string(value) + " was " +
                       std::to_string(state.isActive()) +
                       (field == MarzipelState::Field::isActive ? " isActive" : " trigger"));
    });
    auto did = state.onDidChange([&](MarzipelState::Field, bool) {
        seen.push_back("did " + std::to_string(state.isActive()));
    });
    state.setIsActive(true);
    state.setTriggerValue(!state.triggerValue());
    EXPECT_EQ(seen, (Lines{"will 1 was 0 isActive", "did 1", "will 1 was 1 trigger", "did 1"}));
}

}  // namespace
}  // namespace marzipel
