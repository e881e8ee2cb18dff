#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/space_monitor.h"

namespace marzipel {

/// The detector window: invisible, joining every space, never ordered on screen, with its
/// level, transparency, collection behaviour and mouse handling fixed, and told of each
/// active-space change by the workspace. Finished launching reaches the detector through the
/// application (MacApplication), not through this window. Main thread only. A program whose
/// toolkit makes the application object (Qt) makes the monitor after it.
class MacSpaceMonitor final : public SpaceMonitor {
public:
    MacSpaceMonitor();
    ~MacSpaceMonitor() override;
    MacSpaceMonitor(const MacSpaceMonitor&) = delete;
    MacSpaceMonitor& operator=(const MacSpaceMonitor&) = delete;

    /// Also true when the window system refused to make the window.
    bool isOnActiveSpace() const override;
    void setActiveSpaceChangedHandler(std::function<void()> handler) override;
    bool mainBundleIsAgent() const override;
    std::optional<std::string> mainBundleName() const override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marzipel
