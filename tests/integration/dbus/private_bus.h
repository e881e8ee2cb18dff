#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/linux/linux_brightness_service.h"
#include "platform/sim/sim_basics.h"
#include "support/child_process.h"

namespace marzipel::dbustest {

/// This program's scratch folder: its buses and its GSettings keyfile (XDG_CONFIG_HOME) live
/// here. The main() that comes with it puts the tests on a private system and session bus.
const std::filesystem::path& scratchFolder();
/// A path under the scratch folder.
inline std::string scratch(const std::string& relative) {
    return (scratchFolder() / relative).string();
}

/// A client pair as the program makes it, on a machine without a keyboard backlight; the line
/// that says so is dropped from `log`.
inline std::unique_ptr<BrightnessService> createWithoutKeyboard(SimSystemLog& log) {
    auto service = LinuxBrightnessServiceFactory(log, scratchFolder() / "no-leds").create();
    log.entries.clear();
    return service;
}

}  // namespace marzipel::dbustest
