#pragma once

namespace marzipel {

/// What the marker found at start says about the run that left it.
enum class RunMark {
    none,
    ofRunningProcess,
    ofEndedProcess,
    /// Left before the machine last started, by a process that ended with it.
    ofEarlierBoot,
};

/// A marker that a run has the system switched off, kept where only this user sees it and a
/// restart of the machine does not clear it. A run that ends without putting the system back
/// leaves it behind for the next run to find, in this boot or a later one. Main thread. A marker
/// that cannot be written is not there, and the system log says why; one that cannot be read
/// says its process has ended.
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
