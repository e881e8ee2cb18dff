#pragma once

#include <algorithm>
#include <vector>

#include "platform/desktop_entries.h"

namespace marzipel {

/// Installed desktop entries as a test lists them, in folder order.
class FakeDesktopEntries final : public DesktopEntries {
public:
    std::optional<DesktopEntry> readEntry(const std::string& path) const override {
        auto it = std::ranges::find(entries, path, &DesktopEntry::path);
        if (it == entries.end()) return std::nullopt;
        return *it;
    }
    std::vector<std::string> applicationFolders() const override { return {}; }
    std::optional<DesktopEntry> findById(std::string_view id) const override {
        auto it = std::ranges::find(entries, id, &DesktopEntry::id);
        if (it == entries.end()) return std::nullopt;
        return *it;
    }
    std::vector<DesktopEntry> allEntries() const override { return entries; }
    std::optional<DesktopEntry> findByStartupWmClass(std::string_view windowClass) const override {
        for (const DesktopEntry& entry : entries)
            if (entry.isApplication && !entry.hidden && entry.startupWmClass == windowClass)
                return entry;
        return std::nullopt;
    }

    /// Adds an application entry under /usr/share/applications.
    void add(std::string id, std::string name, std::optional<std::string> startupWmClass = {}) {
        DesktopEntry entry;
        entry.path = "/usr/share/applications/" + id + ".desktop";
        entry.id = std::move(id);
        entry.name = std::move(name);
        entry.startupWmClass = std::move(startupWmClass);
        entry.isApplication = true;
        entries.push_back(std::move(entry));
    }

    std::vector<DesktopEntry> entries;
};

}  // namespace marzipel
