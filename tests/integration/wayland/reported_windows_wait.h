#pragma once

#include <sys/types.h>

#include <algorithm>
#include <vector>

#include "platform/linux/windows/reported_windows.h"
#include "support/event_loop_wait.h"

namespace marzipel {

/// Handles Qt events until the window in front, as the core reads it, belongs to process `pid`
/// (none for 0) and is full screen or not; false when it never does.
inline bool waitForFocus(const ReportedWindows& windows, pid_t pid, bool fullScreen = false) {
    return processEventsUntil([&] {
        const std::optional<RunningApplication> app = windows.frontmostApplication();
        return (app ? app->processId : 0) == pid && windows.isOnActiveSpace() != fullScreen;
    });
}

/// Handles Qt events until the running applications are the processes `pids`, in this order.
inline bool waitForRunning(const ReportedWindows& windows, const std::vector<std::int32_t>& pids) {
    return processEventsUntil([&] {
        return std::ranges::equal(windows.runningApplications(), pids, {},
                                  &RunningApplication::processId);
    });
}

}  // namespace marzipel
