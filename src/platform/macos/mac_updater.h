#pragma once

#include <functional>
#include <memory>

#include "platform/updater.h"

namespace marzipel {

/// Sparkle's standard updater controller, from the Sparkle.framework inside the bundle. Available
/// only when the bundle's Info.plist names a feed (SUFeedURL) and its key (SUPublicEDKey).
/// Main thread only.
class MacUpdater final : public Updater {
public:
    /// `willRelaunch` runs when Sparkle is about to quit the program to install an update and
    /// open it again; it must let that termination through.
    explicit MacUpdater(std::function<void()> willRelaunch);
    ~MacUpdater() override;
    MacUpdater(const MacUpdater&) = delete;
    MacUpdater& operator=(const MacUpdater&) = delete;

    bool isAvailable() const override;
    void start(bool supportsGentleScheduledUpdateReminders) override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool value) override;
    void checkForUpdates() override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marzipel
