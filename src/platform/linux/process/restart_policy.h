#pragma once

#include <chrono>
#include <deque>

namespace marzipel {

/// How a run of the program ended, as far as the supervisor can tell.
struct RunEnd {
    /// It exited with status 0: the user quit, or a second start handed over to the first.
    bool exitedCleanly = false;
    /// It asked to be started again because the display it lost is back.
    bool displayIsBack = false;
    /// It had said it is the session's one Marzipel before it ended.
    bool reportedRunning = false;
};

/// What the supervisor does after a run ends that nobody asked to end.
enum class AfterRun {
    /// End with the run's status.
    end,
    /// Start a new run.
    startAgain,
    /// Start a new run, and say why in the system log.
    startAgainAfterFailure,
    /// Too many failures in a short time: end, and say why in the system log.
    giveUp,
};

/// Starts a run again when it ends unexpectedly, at most three times within a minute. The
/// clock is passed in so that the limit can be tried without waiting for it.
class RestartPolicy {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    AfterRun afterRun(const RunEnd& end, TimePoint now);
    /// Whether a run has been started again: the next one puts back what the last one left.
    bool restarted() const { return restarted_; }

private:
    std::deque<TimePoint> failures_;
    bool restarted_ = false;
};

}  // namespace marzipel
