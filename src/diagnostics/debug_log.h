#pragma once

#include <string_view>

namespace marzipel {

class Clock;
class Console;
class SettingsManager;
class UserDirectories;

/// Writes a fully built message to the debug log when debug logging is on and the shared logger
/// exists; otherwise drops it.
void debugLog(const SettingsManager& settings, std::string_view message);

}  // namespace marzipel

namespace marzipel {

/// What switching debug logging does at once: switching it on makes the shared logger if there
/// is none yet; switching it off keeps an existing one.
void debugLoggingToggled(bool on, const UserDirectories& directories, const Clock& clock,
                         Console& console);

}  // namespace marzipel
