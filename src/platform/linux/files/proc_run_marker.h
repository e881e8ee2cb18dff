#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/run_marker.h"
#include "platform/system_log.h"

namespace marzipel {

/// The marker as the file "active" in a folder, holding the boot it was placed in, this
/// process's id and its start time in /proc: together they name one process even after its id
/// has been handed to another or the machine has started again.
class ProcRunMarker final : public RunMarker {
public:
    /// Runs a task soon, on the thread that places and removes the marker.
    using Scheduler = std::function<void(std::function<void()> task)>;

    /// Keeps the marker in `folder`, made when first needed; with `folder` empty there is never
    /// a marker. A marker that cannot be written is told to `log`. The boot is named by the
    /// first word of `bootIdFile`; processes are read under `procRoot`.
    /// With a `scheduler`, `place` writes the file in a scheduled task instead of within the
    /// call: the flushed write takes milliseconds that dimming should not wait for. Scheduled
    /// after the record's own write, it still never points at an older record. A `remove`
    /// before the task cancels it; a placing still waiting is written on destruction.
    ProcRunMarker(std::string folder, SystemLog& log, Scheduler scheduler = {},
                  std::string bootIdFile = "/proc/sys/kernel/random/boot_id",
                  std::string procRoot = "/proc");
    ~ProcRunMarker() override;
    ProcRunMarker(const ProcRunMarker&) = delete;
    ProcRunMarker& operator=(const ProcRunMarker&) = delete;

    RunMark find() const override;
    void place() override;
    void remove() override;

private:
    /// Writes the marker now when a placing waits for its scheduled task.
    void flush();
    void write();
    std::string bootId() const;

    std::string file_;
    SystemLog& log_;
    std::string bootIdFile_;
    std::string procRoot_;
    Scheduler scheduler_;
    bool placePending_ = false;
    /// Lets a scheduled task that runs after the marker is gone do nothing.
    std::shared_ptr<ProcRunMarker*> self_ = std::make_shared<ProcRunMarker*>(this);
};

/// `marzipel` in the user's state folder ($XDG_STATE_HOME when it is an absolute path, else
/// ~/.local/state), which only this user reaches and a restart keeps; "" without a home.
std::string runMarkerFolder();

}  // namespace marzipel
