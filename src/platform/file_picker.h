#pragma once

#include <string>
#include <vector>

#include "base/status.h"

namespace marzipel {

/// The system's dialog for choosing application descriptions (bundles, and desktop entries
/// where the platform has them), several at a time. Main thread.
class FilePicker {
public:
    virtual ~FilePicker() = default;
    /// Shows the dialog and waits for the user's choice: the chosen files in the order the
    /// picker gave them, none when the user cancelled. A failure carries the picker's own
    /// description of it.
    virtual Result<std::vector<std::string>> pickApplications() = 0;
    /// Asks for access to a file the user chose outside the program's own area; false when it
    /// is refused. Each granted access is ended with `stopAccessing`.
    virtual bool startAccessing(const std::string& path) = 0;
    virtual void stopAccessing(const std::string& path) = 0;
};

}  // namespace marzipel
