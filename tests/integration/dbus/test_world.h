#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/linux_brightness_service.h"
#include "platform/sim/sim_basics.h"
#include "private_bus.h"

namespace marzipel::dbustest {

/// A client pair as the program makes it, on a machine without a keyboard backlight; the line
/// that says so is dropped from `log`.
inline std::unique_ptr<BrightnessService> createWithoutKeyboard(SimSystemLog& log) {
    auto service = LinuxBrightnessServiceFactory(log, scratchFolder() / "no-leds").create();
    log.entries.clear();
    return service;
}

}  // namespace marzipel::dbustest
