#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "platform/space_monitor.h"

namespace marzipel {

/// Spaces as a test moves between them. Starts on a regular space, in a bundle named
/// "Marzipel" that is not an agent.
class SimSpaceMonitor final : public SpaceMonitor {
public:
    bool isOnActiveSpace() const override { return onActiveSpace; }
    void setActiveSpaceChangedHandler(std::function<void()> handler) override {
        handler_ = std::move(handler);
    }
    bool mainBundleIsAgent() const override { return agent; }
    std::optional<std::string> mainBundleName() const override { return bundleName; }

    /// Moves to a full-screen application's space (or a regular one) and reports the change.
    void switchSpace(bool fullScreen) {
        onActiveSpace = !fullScreen;
        if (handler_) handler_();
    }

    bool onActiveSpace = true;
    bool agent = false;
    std::optional<std::string> bundleName = "Marzipel";

private:
    std::function<void()> handler_;
};

}  // namespace marzipel
