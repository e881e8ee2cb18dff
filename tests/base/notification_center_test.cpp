#include "base/notification_center.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace marzipel {
namespace {

TEST(NotificationCenterTest, DeliversInSubscriptionOrderUntilTheTokenGoes) {
    NotificationCenter center;
    std::vector<std::string> heard;
    auto first = center.subscribe("a", nullptr, [&](const Notification& n) {
        heard.push_back("first " + std::string(n.name));
    });
    std::optional<Subscription> second =
        center.subscribe("a", nullptr, [&](const Notification&) { heard.push_back("second"); });
    auto other = center.subscribe("b", nullptr, [&](const Notification&) { heard.push_back("b"); });

    center.post("a", nullptr);
    second.reset();
    center.post("a", nullptr);
    Subscription moved = std::move(first);
    center.post("a", nullptr);
    moved.cancel();
    center.post("a", nullptr);
    EXPECT_EQ(heard, (std::vector<std::string>{"first a", "second", "first a", "first a"}));
}

TEST(NotificationCenterTest, SenderFilterAndPayload) {
    NotificationCenter center;
    int one = 0, two = 0;
    std::vector<const void*> fromOne, fromAny;
    auto onlyOne =
        center.subscribe("n", &one, [&](const Notification& n) { fromOne.push_back(n.sender); });
    auto any =
        center.subscribe("n", nullptr, [&](const Notification& n) { fromAny.push_back(n.sender); });
    center.post("n", &two);
    center.post("n", &one);
    center.post("n", nullptr);
    EXPECT_EQ(fromOne, (std::vector<const void*>{&one}));
    EXPECT_EQ(fromAny, (std::vector<const void*>{&two, &one, nullptr}));
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
