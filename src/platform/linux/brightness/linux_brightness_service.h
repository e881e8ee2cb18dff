#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "base/signal.h"
#include "platform/brightness_service.h"
#include "platform/linux/brightness/keyboard_backlight_choice.h"
#include "platform/system_log.h"

namespace marzipel {

/// Keyboard backlight and blue-light filter of a Linux desktop, reached over D-Bus. Needs a Qt
/// application object, as every QtDBus user does.
///
/// Keyboard: the way `chooseKeyboardWay` picks among those that answer at the start; with none,
/// reads give 0.0 and writes do nothing, which keeps the program running for the blue-light
/// filter alone. Blue light: GNOME's Night Light, else KWin's Night Color; with neither on the
/// session bus, one that comes up later is used from then on, and there is no blue-light client
/// only without a session bus.
class LinuxBrightnessServiceFactory final : public BrightnessServiceFactory {
public:
    /// Looks for the keyboard backlight once and writes to `log` which way it is reached.
    explicit LinuxBrightnessServiceFactory(SystemLog& log,
                                           std::filesystem::path ledsFolder = "/sys/class/leds");

    /// Never null. Looks for the blue-light service afresh; the service lives on the thread
    /// that calls this.
    std::unique_ptr<BrightnessService> create() override;
    /// Asks the session bus afresh.
    BlueLightFilterName blueLightFilterName() override;

    /// Has every client made here ask for its keyboard level and filter state now, so that
    /// reading them in this event-loop turn waits less.
    void readAhead() { readAheadRequested_.emit(); }

private:
    SystemLog& log_;
    KeyboardWay keyboard_ = KeyboardWay::none;
    std::optional<int> powerDevilMaxLevel_;
    std::optional<int> upowerMaxLevel_;
    std::optional<std::filesystem::path> led_;
    Signal<> readAheadRequested_;
};

}  // namespace marzipel
