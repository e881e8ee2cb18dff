#include "diagnostics/debug_log.h"

#include "diagnostics/file_logger.h"
#include "settings/settings_manager.h"

namespace marzipel {

void debugLog(const SettingsManager& settings, std::string_view message) {
    if (!settings.debugLoggingEnabled().get()) return;
    if (FileLogger* logger = FileLogger::shared()) logger->log(message);
}

void debugLoggingToggled(bool on, const UserDirectories& directories, const Clock& clock,
                         Console& console) {
    if (on && !FileLogger::shared()) {
        FileLogger::setShared(FileLogger::create(directories, clock, console));
    }
}

}  // namespace marzipel
