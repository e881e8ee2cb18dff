#pragma once

#include <memory>

#include "platform/system_log.h"

namespace marzipel {

/// The unified system log: one os_log object per subsystem and category, made on first use.
/// Messages are public, since they name no personal data. Any thread.
class MacSystemLog final : public SystemLog {
public:
    MacSystemLog();
    ~MacSystemLog() override;
    MacSystemLog(const MacSystemLog&) = delete;
    MacSystemLog& operator=(const MacSystemLog&) = delete;

    void error(std::string_view subsystem, std::string_view category,
               std::string_view message) override;
    void info(std::string_view subsystem, std::string_view category,
              std::string_view message) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marzipel
