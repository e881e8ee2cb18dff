#pragma once

#include "platform/run_marker.h"

namespace marzipel {

/// The marker as the file "marzipel/active" in the user's own temporary folder, holding this
/// process's id and start time: the two name one process even after its id has been handed to
/// another. Main thread.
class MacRunMarker final : public RunMarker {
public:
    RunMark find() const override;
    void place() override;
    void remove() override;
};

}  // namespace marzipel
