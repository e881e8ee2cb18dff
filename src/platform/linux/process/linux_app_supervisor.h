#pragma once

#include <variant>

#include "platform/system_log.h"

namespace marzipel {

/// What the supervised run of the program knows of its supervisor.
class SupervisedRun {
public:
    SupervisedRun(bool restarted, int runningPipe)
        : restarted_(restarted), runningPipe_(runningPipe) {}

    /// Whether an earlier run ended without being asked to.
    bool restarted() const { return restarted_; }
    /// Tells the supervisor this is the session's one Marzipel, the run to start again if it
    /// ends unexpectedly; a second start that only hands over to the first must not be.
    void reportRunning();

private:
    bool restarted_;
    int runningPipe_;
};

/// The status with which a run asks to be started again at once: the display it lost is back.
inline constexpr int kDisplayIsBackStatus = 75;

/// Runs the program in a child process, from here on, and starts it again when it ends
/// unexpectedly: Qt ends a program whose display connection breaks, and the OOM killer picks
/// the largest process. The supervisor forwards the signals that ask to quit and ends as its
/// child does; it gives up after three unexpected ends within a minute.
/// Returns the run in the child, and the status to exit with in the supervisor.
std::variant<SupervisedRun, int> superviseRuns(SystemLog& systemLog);

}  // namespace marzipel
