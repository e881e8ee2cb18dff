#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/linux_brightness_service.h"
#include "platform/system_log.h"
#include "private_bus.h"

namespace marzipel::dbustest {

/// Keeps what would go to the system log.
class RecordingLog final : public SystemLog {
public:
    void error(std::string_view, std::string_view, std::string_view message) override {
        lines.emplace_back(message);
    }
    std::vector<std::string> lines;
};

/// A client pair as the program makes it, on a machine without a keyboard backlight; the line
/// that says so is dropped from `log`.
inline std::unique_ptr<BrightnessService> createWithoutKeyboard(RecordingLog& log) {
    auto service = LinuxBrightnessServiceFactory(log, scratchFolder() / "no-leds").create();
    log.lines.clear();
    return service;
}

}  // namespace marzipel::dbustest
