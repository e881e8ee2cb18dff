#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/power_assertions.h"
#include "platform/workspace.h"

namespace marzipel {

/// Running applications and the frontmost one, as a test sets them.
class SimWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() const override {
        if (!frontmostProcessId) return std::nullopt;
        return runningApplication(*frontmostProcessId);
    }
    std::vector<RunningApplication> runningApplications() const override { return applications; }
    std::optional<RunningApplication> runningApplication(std::int32_t processId) const override {
        auto it = std::ranges::find(applications, processId, &RunningApplication::processId);
        if (it == applications.end()) return std::nullopt;
        return *it;
    }
    bool openFolder(const std::string& folder) override {
        openedFolders.push_back(folder);
        return openFolderSucceeds;
    }

    std::vector<RunningApplication> applications;
    /// Every folder shown in the file manager, in order, and whether showing works.
    std::vector<std::string> openedFolders;
    bool openFolderSucceeds = true;
    std::optional<std::int32_t> frontmostProcessId;
};

/// The assertion table a test sets, answered as it is; counts the queries.
class SimPowerAssertions final : public PowerAssertions {
public:
    Result<AssertionsByProcess> assertionsByProcess() override {
        ++queries;
        if (!failure.ok()) return failure;
        return table;
    }
    AssertionsByProcess table;
    /// Unless ok, what every query fails with instead.
    Status failure;
    int queries = 0;
};

}  // namespace marzipel
