#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/file_picker.h"

namespace marzipel {

/// A file picker that answers with what a test chose and records every access asked for.
class SimFilePicker final : public FilePicker {
public:
    FilePickResult pickApplications() override {
        ++picks;
        return result;
    }
    bool startAccessing(const std::string& path) override {
        if (refused.contains(path)) return false;
        accessed.push_back(path);
        return true;
    }
    void stopAccessing(const std::string& path) override { released.push_back(path); }

    /// The next answer of the dialog.
    FilePickResult result;
    /// Paths whose access is refused.
    std::set<std::string> refused;
    int picks = 0;
    std::vector<std::string> accessed;
    std::vector<std::string> released;
};

}  // namespace marzipel
