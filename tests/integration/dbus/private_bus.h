#pragma once

#include <filesystem>

#include "support/child_process.h"

namespace marzipel::dbustest {

/// This program's scratch folder: its buses and its GSettings keyfile (XDG_CONFIG_HOME) live
/// here. The main() that comes with it puts the tests on a private system and session bus.
const std::filesystem::path& scratchFolder();

}  // namespace marzipel::dbustest
