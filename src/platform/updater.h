#pragma once

namespace marzipel {

/// The software updater: scheduled checks in the background and checks on demand, each with
/// the updater's own windows. Main thread only.
class Updater {
public:
    virtual ~Updater() = default;

    /// False where the program is updated by other means (a distribution's packages); then
    /// nothing shows the updater and the other calls do nothing.
    virtual bool isAvailable() const = 0;

    /// Starts the updater once, at launch. With gentle reminders, an update found by a
    /// scheduled check is announced without taking the focus (the program has no Dock icon).
    virtual void start(bool supportsGentleScheduledUpdateReminders) = 0;

    /// Whether scheduled checks run; the updater keeps this setting itself.
    virtual bool automaticallyChecksForUpdates() const = 0;
    /// Switches scheduled checks on or off.
    virtual void setAutomaticallyChecksForUpdates(bool value) = 0;
    /// Starts a check at once, whatever the setting above says.
    virtual void checkForUpdates() = 0;
};

}  // namespace marzipel
