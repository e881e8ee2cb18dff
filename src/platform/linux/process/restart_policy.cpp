#include "platform/linux/process/restart_policy.h"

namespace marzipel {

AfterRun RestartPolicy::afterRun(const RunEnd& end, TimePoint now) {
    if (end.displayIsBack) {
        restarted_ = true;
        return AfterRun::startAgain;
    }
    // A first run that fails to start has nothing to put back; a run started again after one
    // died may fail the same way (a compositor dying takes a moment to stop accepting
    // connections), and is retried within the same limit.
    if (end.exitedCleanly || (!end.reportedRunning && !restarted_)) return AfterRun::end;
    while (!failures_.empty() && now - failures_.front() > std::chrono::minutes(1))
        failures_.pop_front();
    if (failures_.size() == 3) return AfterRun::giveUp;
    failures_.push_back(now);
    restarted_ = true;
    return AfterRun::startAgainAfterFailure;
}

}  // namespace marzipel
