#include "platform/macos/mac_run_marker.h"

#import <Foundation/Foundation.h>

#include <sys/sysctl.h>
#include <unistd.h>

#include <string>

namespace marzipel {

namespace {

NSString* markerPath() {
    return [NSTemporaryDirectory() stringByAppendingPathComponent:@"marzipel/active"];
}

/// When the process started, as seconds and microseconds; "" when it does not run.
std::string startTimeOf(pid_t processId) {
    int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, processId};
    struct kinfo_proc info {};
    size_t size = sizeof info;
    if (sysctl(name, 4, &info, &size, nullptr, 0) != 0 || size == 0) return {};
    const timeval started = info.kp_proc.p_starttime;
    return std::to_string(started.tv_sec) + "." + std::to_string(started.tv_usec);
}

}  // namespace

RunMark MacRunMarker::find() const {
    NSString* text = [NSString stringWithContentsOfFile:markerPath()
                                               encoding:NSUTF8StringEncoding
                                                  error:nil];
    if (!text) return RunMark::none;
    NSArray<NSString*>* fields =
        [text componentsSeparatedByCharactersInSet:NSCharacterSet.whitespaceAndNewlineCharacterSet];
    if (fields.count < 2 || fields[0].intValue <= 0) return RunMark::ofEndedProcess;
    return startTimeOf(fields[0].intValue) == std::string(fields[1].UTF8String)
               ? RunMark::ofRunningProcess
               : RunMark::ofEndedProcess;
}

void MacRunMarker::place() {
    NSString* path = markerPath();
    [NSFileManager.defaultManager createDirectoryAtPath:path.stringByDeletingLastPathComponent
                            withIntermediateDirectories:YES
                                             attributes:nil
                                                  error:nil];
    const pid_t self = getpid();
    const std::string text = std::to_string(self) + " " + startTimeOf(self) + "\n";
    [@(text.c_str()) writeToFile:path atomically:YES encoding:NSUTF8StringEncoding error:nil];
}

void MacRunMarker::remove() {
    [NSFileManager.defaultManager removeItemAtPath:markerPath() error:nil];
}

}  // namespace marzipel
