#pragma once

#include <string_view>

namespace marzipel {

class SettingsManager;

/// Writes a fully built message to the debug log when debug logging is on and the shared logger
/// exists; otherwise drops it.
void debugLog(const SettingsManager& settings, std::string_view message);

}  // namespace marzipel
