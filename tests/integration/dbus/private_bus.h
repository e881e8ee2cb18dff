#pragma once

#include <filesystem>
#include <string>

#include "support/child_process.h"

namespace marzipel::dbustest {

/// This program's scratch folder: its buses and its GSettings keyfile (XDG_CONFIG_HOME) live
/// here. The main() that comes with it puts the tests on a private system and session bus.
const std::filesystem::path& scratchFolder();
/// A path under the scratch folder.
inline std::string scratch(const std::string& relative) {
    return (scratchFolder() / relative).string();
}

}  // namespace marzipel::dbustest
