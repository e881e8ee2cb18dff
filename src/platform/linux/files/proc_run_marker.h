#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/run_marker.h"

namespace marzipel {

/// The marker as the file "active" in a folder, holding this process's id and its start time
/// in /proc: the two name one process even after its id has been handed to another.
class ProcRunMarker final : public RunMarker {
public:
    /// Runs a task soon, on the thread that places and removes the marker.
    using Scheduler = std::function<void(std::function<void()> task)>;

    /// Keeps the marker in `folder`, made when first needed; with `folder` empty there is never
    /// a marker. Processes are read under `procRoot`.
    /// With a `scheduler`, `place` writes the file in a scheduled task instead of within the
    /// call: the flushed write takes milliseconds that dimming should not wait for. Scheduled
    /// after the record's own write, it still never points at an older record. A `remove`
    /// before the task cancels it; a placing still waiting is written on destruction.
    explicit ProcRunMarker(std::string folder, std::string procRoot = "/proc",
                           Scheduler scheduler = {});
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

    std::string file_;
    std::string procRoot_;
    Scheduler scheduler_;
    bool placePending_ = false;
    /// Lets a scheduled task that runs after the marker is gone do nothing.
    std::shared_ptr<ProcRunMarker*> self_ = std::make_shared<ProcRunMarker*>(this);
};

/// $XDG_RUNTIME_DIR/marzipel, the folder only this user reaches and that the end of the session
/// clears; "" when XDG_RUNTIME_DIR is not an absolute path.
std::string runMarkerFolder();

}  // namespace marzipel
