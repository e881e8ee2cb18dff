#include "detection/desktop_entry_catalog.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "detection/bundle_reader.h"
#include "detection/known_linux_video_apps.h"

namespace marzipel {

std::optional<AppItem> DesktopEntryCatalog::appItem(const std::string& path) const {
    if (!isApplicationPath(path)) return bundles_.appItem(path);
    std::optional<DesktopEntry> entry = entries_.readEntry(path);
    if (!entry || !entry->isApplication || entry->noDisplay || entry->hidden) return std::nullopt;
    std::string name = entry->name.empty() ? std::string(kUnknownAppName) : std::move(entry->name);
    return AppItem{std::move(entry->id), std::move(name), std::move(entry->iconPath)};
}

std::vector<std::string> DesktopEntryCatalog::applicationFolders() const {
    return entries_.applicationFolders();
}

bool DesktopEntryCatalog::isApplicationPath(std::string_view path) const {
    return path.ends_with(".desktop");
}

Result<std::vector<std::string>> DesktopEntryCatalog::listFolder(const std::string& folder) const {
    Result<std::vector<std::string>> listing = bundles_.listFolder(folder);
    if (!listing.ok()) return listing;
    std::vector<std::string> paths = std::move(listing).value();
    // An id names the entry in the first folder that holds it, so a copy in the user's folder
    // (a menu editor's, or one that hides the app) stands for the system's.
    std::erase_if(paths, [this](const std::string& path) {
        if (!isApplicationPath(path)) return false;
        const std::optional<DesktopEntry> shown =
            entries_.findById(std::filesystem::path(path).stem().string());
        return shown && shown->path != path;
    });
    return paths;
}

bool DesktopEntryCatalog::isKnownVideoApp(std::string_view id) const {
    return std::ranges::find(kKnownLinuxVideoAppIds, id) != kKnownLinuxVideoAppIds.end();
}

}  // namespace marzipel
