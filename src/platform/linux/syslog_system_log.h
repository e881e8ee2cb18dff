#pragma once

#include "platform/system_log.h"

namespace marzipel {

/// syslog(3) under the program's name, errors at LOG_ERR and routine lines at LOG_INFO; each
/// message is prefixed with "[subsystem:category] ".
class SyslogSystemLog final : public SystemLog {
public:
    void error(std::string_view subsystem, std::string_view category,
               std::string_view message) override;
    void info(std::string_view subsystem, std::string_view category,
              std::string_view message) override;
};

}  // namespace marzipel
