#include "platform/sim/sim_basics.h"

namespace marzipel {

void SimPreferencesStore::setObject(std::string_view key, PlistValue value) {
    writes.push_back("set " + std::string(key));
    InMemoryPreferences::setObject(key, std::move(value));
}

void SimPreferencesStore::removeObject(std::string_view key) {
    writes.push_back("remove " + std::string(key));
    InMemoryPreferences::removeObject(key);
}

void SimConsole::printLine(std::string_view text) {
    lines.emplace_back(text);
    if (onLine) onLine(lines.back());
}

void SimSystemLog::error(std::string_view subsystem, std::string_view category,
                         std::string_view message) {
    entries.push_back(std::string(subsystem) + "/" + std::string(category) + ": " +
                      std::string(message));
    if (onEntry) onEntry(std::string(message));
}

void SimSystemLog::info(std::string_view subsystem, std::string_view category,
                        std::string_view message) {
    infoEntries.push_back(std::string(subsystem) + "/" + std::string(category) + ": " +
                          std::string(message));
}

}  // namespace marzipel
