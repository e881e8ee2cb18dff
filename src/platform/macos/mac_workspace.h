#pragma once

#include "platform/workspace.h"

namespace marzipel {

/// NSWorkspace and its NSRunningApplication handles. Main thread.
class MacWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override;
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(std::int32_t processId) const override;
    /// Opens the folder in the Finder.
    bool openFolder(const std::string& folder) override;
};

}  // namespace marzipel
