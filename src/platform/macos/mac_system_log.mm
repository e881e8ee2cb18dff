#include "platform/macos/mac_system_log.h"

#include <os/log.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace marzipel {

struct MacSystemLog::Impl {
    std::mutex mutex;
    std::map<std::pair<std::string, std::string>, os_log_t> logs;

    os_log_t logFor(std::string_view subsystem, std::string_view category) {
        std::lock_guard lock(mutex);
        auto key = std::pair{std::string(subsystem), std::string(category)};
        auto it = logs.find(key);
        if (it == logs.end()) {
            os_log_t made = os_log_create(key.first.c_str(), key.second.c_str());
            it = logs.emplace(std::move(key), made).first;
        }
        return it->second;
    }
};

MacSystemLog::MacSystemLog() : impl_(std::make_unique<Impl>()) {}

MacSystemLog::~MacSystemLog() = default;

void MacSystemLog::error(std::string_view subsystem, std::string_view category,
                         std::string_view message) {
    os_log_t log = impl_->logFor(subsystem, category);
    const std::string text(message);
    os_log_error(log, "%{public}s", text.c_str());
}

void MacSystemLog::info(std::string_view subsystem, std::string_view category,
                        std::string_view message) {
    os_log_t log = impl_->logFor(subsystem, category);
    const std::string text(message);
    os_log_info(log, "%{public}s", text.c_str());
}

}  // namespace marzipel
