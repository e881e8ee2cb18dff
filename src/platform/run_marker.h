#pragma once

namespace marzipel {

/// What the marker found at start says about the run that left it.
enum class RunMark { none, ofRunningProcess, ofEndedProcess };

/// A marker that a run has the system switched off, kept where only this user sees it and a
/// restart of the machine clears it. A run that ends without putting the system back leaves it
/// behind for the next run to find. Main thread. Failures are not reported: a marker that
/// cannot be written is not there, and one that cannot be read says its process has ended.
class RunMarker {
public:
    virtual ~RunMarker() = default;
    /// The marker present now, and whether the process that left it still runs.
    virtual RunMark find() const = 0;
    /// Leaves a marker naming this process, replacing any other.
    virtual void place() = 0;
    /// Removes the marker, whichever process left it.
    virtual void remove() = 0;
};

}  // namespace marzipel
