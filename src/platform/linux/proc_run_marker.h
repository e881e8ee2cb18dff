#pragma once

#include <string>

#include "platform/run_marker.h"

namespace marzipel {

/// The marker as the file "active" in a folder, holding this process's id and its start time
/// in /proc: the two name one process even after its id has been handed to another.
class ProcRunMarker final : public RunMarker {
public:
    /// Keeps the marker in `folder`, made when first needed; with `folder` empty there is never
    /// a marker. Processes are read under `procRoot`.
    explicit ProcRunMarker(std::string folder, std::string procRoot = "/proc");

    RunMark find() const override;
    void place() override;
    void remove() override;

private:
    std::string file_;
    std::string procRoot_;
};

/// $XDG_RUNTIME_DIR/marzipel, the folder only this user reaches and that the end of the session
/// clears; "" when XDG_RUNTIME_DIR is not an absolute path.
std::string runMarkerFolder();

}  // namespace marzipel
