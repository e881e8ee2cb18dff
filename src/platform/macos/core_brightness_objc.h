#pragma once

// CoreBrightness is a private framework: the SDK declares none of it. These are the classes and
// the one record that the program uses, as the framework has them. The classes are looked up by
// name at run time (the framework is loaded, not linked), so nothing here is linked against.

#import <Foundation/Foundation.h>

/// A time of day in the Night Shift schedule.
typedef struct {
    int hour;
    int minute;
} CBBlueLightScheduleTime;

/// The custom Night Shift schedule.
typedef struct {
    CBBlueLightScheduleTime fromTime;
    CBBlueLightScheduleTime toTime;
} CBBlueLightSchedule;

/// What `getBlueLightStatus:` fills in.
typedef struct {
    BOOL active;
    BOOL enabled;
    BOOL sunSchedulePermitted;
    /// 0 = no schedule, 1 = sunset to sunrise, 2 = custom schedule.
    int mode;
    CBBlueLightSchedule schedule;
    unsigned long long disableFlags;
    BOOL available;
} CBBlueLightStatus;

/// Night Shift.
@interface CBBlueLightClient : NSObject
- (BOOL)getBlueLightStatus:(CBBlueLightStatus*)status;
- (BOOL)setEnabled:(BOOL)enabled;
- (BOOL)setMode:(int)mode;
@end

/// The keyboard backlight; the built-in keyboard has the identifier 1.
@interface KeyboardBrightnessClient : NSObject
- (float)brightnessForKeyboard:(unsigned long long)keyboardId;
- (BOOL)setBrightness:(float)brightness forKeyboard:(unsigned long long)keyboardId;
@end
