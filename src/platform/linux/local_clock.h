#pragma once

#include <locale.h>

#include "platform/clock.h"

namespace marzipel {

/// The system clock in the local time zone. Timestamps use the time conventions of the locale
/// the environment names (LC_ALL, LC_TIME, LANG), taken once at construction, without changing
/// the process's global locale: strftime "%x %X %Z", the locale's date, then its time with
/// seconds, then the zone's abbreviation.
class LocalClock final : public Clock {
public:
    /// Takes the time conventions of the locale the environment names, else those of "C".
    LocalClock();
    ~LocalClock() override;
    LocalClock(const LocalClock&) = delete;
    LocalClock& operator=(const LocalClock&) = delete;

    LocalTime localTime() const override;
    std::string timestampText() const override;

private:
    locale_t locale_;
};

}  // namespace marzipel
