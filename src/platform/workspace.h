#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marzipel {

enum class ActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// A running application as the workspace reports it. Two handles are equal when they name the
/// same process, whatever else they say.
struct RunningApplication {
    std::int32_t processId = 0;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> localizedName;
    /// Path of the application's bundle (or desktop entry), when it has one.
    std::optional<std::string> bundlePath;
    ActivationPolicy activationPolicy = ActivationPolicy::regular;

    friend bool operator==(const RunningApplication& a, const RunningApplication& b) {
        return a.processId == b.processId;
    }
};

/// The desktop's view of running applications. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// The application that receives key events, if any.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;
    /// All running applications, in the workspace's own order.
    virtual std::vector<RunningApplication> runningApplications() const = 0;
    /// The application of a process, or nothing for daemons, background and ended processes.
    virtual std::optional<RunningApplication> runningApplication(std::int32_t processId) const = 0;
    /// Shows `folder` in the file manager. False when the file manager could not be asked.
    virtual bool openFolder(const std::string& folder) = 0;
};

}  // namespace marzipel
