#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/file_picker.h"

namespace marzipel {

/// A file picker that answers with what a test chose and records every access given back.
class SimFilePicker final : public FilePicker {
public:
    Result<std::vector<std::string>> pickApplications() override { return result; }
    bool startAccessing(const std::string& path) override { return !refused.contains(path); }
    void stopAccessing(const std::string& path) override { released.push_back(path); }

    /// The next answer of the dialog.
    Result<std::vector<std::string>> result = std::vector<std::string>();
    /// Paths whose access is refused.
    std::set<std::string> refused;
    std::vector<std::string> released;
};

}  // namespace marzipel
