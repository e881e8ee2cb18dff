#include "platform/linux/local_clock.h"

#include <time.h>

#include <array>

namespace marzipel {
namespace {

tm now() {
    tzset();  // follows a change of time zone while running
    time_t seconds = time(nullptr);
    tm local{};
    localtime_r(&seconds, &local);
    return local;
}

}  // namespace

LocalClock::LocalClock() : locale_(newlocale(LC_TIME_MASK, "", locale_t{})) {
    // An environment naming a locale that is not installed falls back to the C conventions.
    if (locale_ == locale_t{}) locale_ = newlocale(LC_TIME_MASK, "C", locale_t{});
}

LocalClock::~LocalClock() {
    if (locale_ != locale_t{}) freelocale(locale_);
}

LocalTime LocalClock::localTime() const {
    tm local = now();
    return LocalTime{local.tm_hour, local.tm_min};
}

std::string LocalClock::timestampText() const {
    tm local = now();
    std::array<char, 256> buffer{};
    std::size_t length = locale_ != locale_t{}
                             ? strftime_l(buffer.data(), buffer.size(), "%x %X %Z", &local, locale_)
                             : strftime(buffer.data(), buffer.size(), "%x %X %Z", &local);
    return std::string(buffer.data(), length);
}

}  // namespace marzipel
