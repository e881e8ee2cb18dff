#pragma once

#include "platform/system_log.h"

namespace marzipel {

/// syslog(3) at LOG_ERR under the program's name; each message is prefixed with
/// "[subsystem:category] ".
class SyslogSystemLog final : public SystemLog {
public:
    void error(std::string_view subsystem, std::string_view category,
               std::string_view message) override;
};

}  // namespace marzipel
