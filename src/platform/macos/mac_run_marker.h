#pragma once

#include "platform/run_marker.h"
#include "platform/system_log.h"

namespace marzipel {

/// The marker as the file "active" in the application's folder in Application Support, holding
/// when the machine started, this process's id and its start time: together they name one
/// process even after its id has been handed to another or the machine has started again. A
/// marker that cannot be written is told to `log`. Main thread.
class MacRunMarker final : public RunMarker {
public:
    explicit MacRunMarker(SystemLog& log) : log_(log) {}

    RunMark find() const override;
    void place() override;
    void remove() override;

private:
    SystemLog& log_;
};

}  // namespace marzipel
