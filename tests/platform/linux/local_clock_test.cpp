#include "platform/linux/local_clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <string>

namespace marzipel {
namespace {

TEST(LocalClockTest, WritesTheLocaleDateThenTimeWithSecondsThenZone) {
    const char* savedZone = std::getenv("TZ");
    const char* savedLocale = std::getenv("LC_ALL");
    const std::string zone = savedZone ? savedZone : "";
    const std::string locale = savedLocale ? savedLocale : "";
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "C", 1);

    LocalClock clock;
    const std::string text = clock.timestampText();
    EXPECT_TRUE(std::regex_match(text, std::regex(R"(\d\d/\d\d/\d\d \d\d:\d\d:\d\d UTC)"))) << text;
    const int hour = std::stoi(text.substr(9, 2));
    const LocalTime now = clock.localTime();
    EXPECT_TRUE(now.hour == hour || now.hour == (hour + 1) % 24);

    savedZone ? setenv("TZ", zone.c_str(), 1) : unsetenv("TZ");
    savedLocale ? setenv("LC_ALL", locale.c_str(), 1) : unsetenv("LC_ALL");
}

}  // namespace
}  // namespace marzipel
