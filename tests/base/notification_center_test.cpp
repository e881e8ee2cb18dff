#include "base/notification_center.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace marzipel {
namespace {

TEST(NotificationCenterTest, DeliversByNameAndSenderInSubscriptionOrderUntilTheTokenGoes) {
    NotificationCenter center;
    int one = 0;
    std::vector<std::string> heard;
    auto first = center.subscribe("a", nullptr, [&](const Notification& n) {
        heard.push_back("first " + std::string(n.name));
    });
    std::optional<Subscription> second =
        center.subscribe("a", &one, [&](const Notification&) { heard.push_back("second"); });
    auto other = center.subscribe("b", nullptr, [&](const Notification&) { heard.push_back("b"); });

    center.post("a", nullptr);
    center.post("a", &one);
    second.reset();
    center.post("a", &one);
    Subscription moved = std::move(first);
    center.post("a", nullptr);
    moved.cancel();
    center.post("a", nullptr);
    EXPECT_EQ(heard,
              (std::vector<std::string>{"first a", "first a", "second", "first a", "first a"}));
}

TEST(NotificationCenterTest, SubscribersMayCancelThemselvesAndOthersWhileBeingCalled) {
    NotificationCenter center;
    std::vector<std::string> heard;
    Subscription self, later, added;
    self = center.subscribe("n", nullptr, [&](const Notification&) {
        heard.push_back("self");
        self.cancel();
        later.cancel();
        added =
            center.subscribe("n", nullptr, [&](const Notification&) { heard.push_back("added"); });
    });
    later = center.subscribe("n", nullptr, [&](const Notification&) { heard.push_back("later"); });
    center.post("n", nullptr);
    // A subscription made during a post is not called by that post, only by the next.
    center.post("n", nullptr);
    EXPECT_EQ(heard, (std::vector<std::string>{"self", "added"}));
}

}  // namespace
}  // namespace marzipel
