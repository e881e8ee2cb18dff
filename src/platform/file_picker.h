#pragma once

#include <optional>
#include <string>
#include <vector>

namespace marzipel {

/// What the user chose in the file picker.
struct FilePickResult {
    /// The chosen files in the order the picker gave them; empty when the user cancelled.
    std::vector<std::string> paths;
    /// The picker's own description of a failure; `paths` is then empty.
    std::optional<std::string> error;
};

/// The system's dialog for choosing application descriptions (bundles, and desktop entries
/// where the platform has them), several at a time. Main thread.
class FilePicker {
public:
    virtual ~FilePicker() = default;
    /// Shows the dialog and waits for the user's choice.
    virtual FilePickResult pickApplications() = 0;
    /// Asks for access to a file the user chose outside the program's own area; false when it
    /// is refused. Each granted access is ended with `stopAccessing`.
    virtual bool startAccessing(const std::string& path) = 0;
    virtual void stopAccessing(const std::string& path) = 0;
};

}  // namespace marzipel
