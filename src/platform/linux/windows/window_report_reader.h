#pragma once

#include <QDBusMessage>
#include <optional>
#include <string>
#include <vector>

#include "base/status.h"
#include "platform/linux/windows/reported_windows.h"

namespace marzipel {

/// The largest process id Linux hands out (PID_MAX_LIMIT on 64-bit kernels).
inline constexpr std::int32_t kMaxProcessId = 4 * 1024 * 1024;
/// Longer names are no application's: a desktop-file name is a file name.
inline constexpr int kMaxReportedNameLength = 255;
/// More windows than a session holds; a longer list is refused.
inline constexpr int kMaxReportedWindows = 1024;

/// Reads the window reports a script inside the compositor sends, in the form KWin's callDBus
/// gives JavaScript values: an object is an a{sv}, an array is an av, a whole number is an int32
/// (a double when it does not fit). A window is a map with "pid" (number), "fullScreen" (bool),
/// and the strings "desktopFileName", "resourceName" and "resourceClass", each optional; other
/// keys are ignored. A report that does not read fails with what is wrong with it.
class WindowReportReader {
public:
    /// One a{sv}: the focused window, or an empty map when no window has focus.
    static Result<std::optional<ReportedWindow>> readActive(const QDBusMessage& call);
    /// One av of a{sv}: the normal windows.
    static Result<std::vector<WindowIdentity>> readWindows(const QDBusMessage& call);
};

}  // namespace marzipel
