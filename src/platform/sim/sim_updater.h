#pragma once

#include "platform/updater.h"

namespace marzipel {

/// An updater that only remembers what it was told.
class SimUpdater final : public Updater {
public:
    bool isAvailable() const override { return available; }
    void start(bool gentleReminders) override {
        ++starts;
        this->gentleReminders = gentleReminders;
    }
    bool automaticallyChecksForUpdates() const override { return automaticChecks; }
    void setAutomaticallyChecksForUpdates(bool value) override { automaticChecks = value; }
    void checkForUpdates() override { ++checks; }

    bool available = true;
    /// Calls of start(), and the reminder style last asked for.
    int starts = 0;
    bool gentleReminders = false;
    bool automaticChecks = true;
    /// Calls of checkForUpdates().
    int checks = 0;
};

}  // namespace marzipel
