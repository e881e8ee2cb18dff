#pragma once

#include "platform/updater.h"

namespace marzipel {

/// The distribution's package manager updates the program, so there is no updater to show.
class NoUpdater final : public Updater {
public:
    bool isAvailable() const override { return false; }
    void start(bool) override {}
    bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override {}
    void checkForUpdates() override {}
};

}  // namespace marzipel
