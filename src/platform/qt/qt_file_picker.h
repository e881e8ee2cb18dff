#pragma once

#include "platform/file_picker.h"

namespace marzipel {

/// Qt's file dialog, choosing several applications at once: desktop entries on Linux,
/// application bundles on macOS. Nothing is sandboxed, so every access is granted.
class QtFilePicker final : public FilePicker {
public:
    Result<std::vector<std::string>> pickApplications() override;
    bool startAccessing(const std::string&) override { return true; }
    void stopAccessing(const std::string&) override {}
};

}  // namespace marzipel
