#include "platform/macos/mac_clock.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {

LocalTime MacClock::localTime() const {
    NSDateComponents* now =
        [NSCalendar.currentCalendar components:NSCalendarUnitHour | NSCalendarUnitMinute
                                      fromDate:[NSDate date]];
    return LocalTime{static_cast<int>(now.hour), static_cast<int>(now.minute)};
}

std::string MacClock::timestampText() const {
    return utf8String([NSDateFormatter localizedStringFromDate:[NSDate date]
                                                     dateStyle:NSDateFormatterShortStyle
                                                     timeStyle:NSDateFormatterLongStyle]);
}

}  // namespace marzipel
