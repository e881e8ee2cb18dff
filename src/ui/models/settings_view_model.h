#pragma once

#include <functional>
#include <memory>

#include "base/signal.h"

namespace marzipel {

/// A key released in one of the program's windows. `command` is the platform's command
/// modifier: Command on macOS, Ctrl elsewhere.
struct KeyRelease {
    /// The key's letter in upper case, or 0 for any other key.
    char key = 0;
    bool shift = false;
    bool command = false;
    /// A release the keyboard's auto-repeat made while the key is still held.
    bool autoRepeat = false;
};

/// Posts `task` to the main event loop, to run after the current event has been handled.
using PostToMainLoop = std::function<void(std::function<void()> task)>;

/// Whether the settings window shows its hidden advanced section. Command-Shift-D (other
/// modifiers allowed) toggles it when the keys are released; the toggle runs on the event
/// loop, after the key event. Never stored: every model starts hidden. Main thread.
class SettingsViewModel {
public:
    explicit SettingsViewModel(PostToMainLoop post);
    SettingsViewModel(const SettingsViewModel&) = delete;
    SettingsViewModel& operator=(const SettingsViewModel&) = delete;

    bool showAdvancedSettings() const { return showAdvancedSettings_; }

    /// Sees every key released in the program's windows; never consumes it.
    void keyReleased(const KeyRelease& event);

    /// Called after every toggle.
    [[nodiscard]] Subscription onChanged(std::function<void()> listener) {
        return changed_.connect(std::move(listener));
    }

private:
    void toggle();

    PostToMainLoop post_;
    bool showAdvancedSettings_ = false;
    Signal<> changed_;
    // A posted toggle that arrives after the model is gone finds this expired.
    std::shared_ptr<SettingsViewModel*> self_;
};

}  // namespace marzipel
