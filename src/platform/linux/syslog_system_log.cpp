#include "platform/linux/syslog_system_log.h"

#include <syslog.h>

#include <string>

namespace marzipel {
namespace {

void writeLine(int priority, std::string_view subsystem, std::string_view category,
               std::string_view message) {
    std::string line;
    line.reserve(subsystem.size() + category.size() + message.size() + 4);
    line.append("[").append(subsystem).append(":").append(category).append("] ").append(message);
    syslog(priority, "%.*s", static_cast<int>(line.size()), line.c_str());
}

}  // namespace

void SyslogSystemLog::error(std::string_view subsystem, std::string_view category,
                            std::string_view message) {
    writeLine(LOG_ERR, subsystem, category, message);
}

void SyslogSystemLog::info(std::string_view subsystem, std::string_view category,
                           std::string_view message) {
    writeLine(LOG_INFO, subsystem, category, message);
}

}  // namespace marzipel
