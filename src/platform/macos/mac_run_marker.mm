#include "platform/macos/mac_run_marker.h"

#import <Foundation/Foundation.h>

#include <sys/sysctl.h>
#include <unistd.h>

#include <string>

namespace marzipel {

namespace {

NSString* markerPath() {
    NSURL* support = [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                                          inDomains:NSUserDomainMask]
                         .firstObject;
    return [support.path stringByAppendingPathComponent:@"com.orsavelt.Marzipel/active"];
}

std::string timeText(const timeval& time) {
    return std::to_string(time.tv_sec) + "." + std::to_string(time.tv_usec);
}

/// When the machine started; every boot has its own.
std::string bootTime() {
    timeval booted{};
    size_t size = sizeof booted;
    if (sysctlbyname("kern.boottime", &booted, &size, nullptr, 0) != 0) return "unknown";
    return timeText(booted);
}

/// When the process started; "" when it no longer runs, as for a zombie that was killed but
/// not yet reaped and still has its entry.
std::string startTimeOf(pid_t processId) {
    int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, processId};
    struct kinfo_proc info {};
    size_t size = sizeof info;
    if (sysctl(name, 4, &info, &size, nullptr, 0) != 0 || size == 0) return {};
    if (info.kp_proc.p_stat == SZOMB) return {};
    return timeText(info.kp_proc.p_starttime);
}

}  // namespace

RunMark MacRunMarker::find() const {
    NSString* text = [NSString stringWithContentsOfFile:markerPath()
                                               encoding:NSUTF8StringEncoding
                                                  error:nil];
    if (!text) return RunMark::none;
    NSArray<NSString*>* fields =
        [text componentsSeparatedByCharactersInSet:NSCharacterSet.whitespaceAndNewlineCharacterSet];
    if (fields.count < 3 || fields[1].intValue <= 0) return RunMark::ofEndedProcess;
    if (bootTime() != fields[0].UTF8String) return RunMark::ofEarlierBoot;
    return startTimeOf(fields[1].intValue) == std::string(fields[2].UTF8String)
               ? RunMark::ofRunningProcess
               : RunMark::ofEndedProcess;
}

void MacRunMarker::place() {
    NSString* path = markerPath();
    NSError* error = nil;
    const pid_t self = getpid();
    const std::string text =
        bootTime() + " " + std::to_string(self) + " " + startTimeOf(self) + "\n";
    if (![NSFileManager.defaultManager createDirectoryAtPath:path.stringByDeletingLastPathComponent
                                 withIntermediateDirectories:YES
                                                  attributes:nil
                                                       error:&error] ||
        ![@(text.c_str()) writeToFile:path
                           atomically:YES
                             encoding:NSUTF8StringEncoding
                                error:&error]) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   std::string("Could not place the run marker: ") +
                       error.localizedDescription.UTF8String +
                       "; if this run ends unexpectedly, the next one cannot put things back");
    }
}

void MacRunMarker::remove() {
    [NSFileManager.defaultManager removeItemAtPath:markerPath() error:nil];
}

}  // namespace marzipel
