#include "platform/linux/local_clock.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "support/scoped_env.h"

namespace marzipel {
namespace {

TEST(LocalClockTest, WritesTheLocaleDateThenTimeWithSecondsThenZone) {
    ScopedEnv zone("TZ", "UTC");
    ScopedEnv locale("LC_ALL", "C");

    LocalClock clock;
    const std::string text = clock.timestampText();
    EXPECT_TRUE(std::regex_match(text, std::regex(R"(\d\d/\d\d/\d\d \d\d:\d\d:\d\d UTC)"))) << text;
    const int hour = std::stoi(text.substr(9, 2));
    const LocalTime now = clock.localTime();
    EXPECT_TRUE(now.hour == hour || now.hour == (hour + 1) % 24);
}

}  // namespace
}  // namespace marzipel
