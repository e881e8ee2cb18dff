#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/common/in_memory_preferences.h"
#include "platform/console.h"
#include "platform/run_marker.h"
#include "platform/system_log.h"
#include "platform/user_directories.h"

namespace marzipel {

/// Preferences in memory that count the writes they were asked for.
class SimPreferencesStore final : public InMemoryPreferences {
public:
    using InMemoryPreferences::InMemoryPreferences;
    void setObject(std::string_view key, PlistValue value) override;
    void removeObject(std::string_view key) override;

    std::vector<std::string> writes;  // "set KEY" / "remove KEY", in order
};

/// Lines printed to standard output, kept in order; `onLine` sees each as it comes.
class SimConsole final : public Console {
public:
    void printLine(std::string_view text) override;
    std::vector<std::string> lines;
    std::function<void(const std::string&)> onLine;
};

/// Log entries as "subsystem/category: message", errors and routine lines apart.
class SimSystemLog final : public SystemLog {
public:
    void error(std::string_view subsystem, std::string_view category,
               std::string_view message) override;
    void info(std::string_view subsystem, std::string_view category,
              std::string_view message) override;
    std::vector<std::string> entries;
    std::vector<std::string> infoEntries;
    /// Sees the errors only.
    std::function<void(const std::string& message)> onEntry;
};

/// A clock that stands still at the time it is set to.
class SimClock final : public Clock {
public:
    LocalTime localTime() const override { return time; }
    std::string timestampText() const override { return timestamp; }
    LocalTime time{12, 0};
    std::string timestamp = "1/1/26, 12:00:00 PM UTC";
};

/// A marker kept in memory; this run's own reads as running.
class SimRunMarker final : public RunMarker {
public:
    RunMark find() const override { return mark; }
    void place() override { mark = RunMark::ofRunningProcess; }
    void remove() override { mark = RunMark::none; }
    RunMark mark = RunMark::none;
};

class SimUserDirectories final : public UserDirectories {
public:
    std::optional<std::string> documentsDirectory() const override { return documents; }
    std::optional<std::string> documents;
};

}  // namespace marzipel
