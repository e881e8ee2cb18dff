#include "detection/installed_video_apps.h"

namespace marzipel {

std::vector<AppItem> findInstalledVideoApps(const AppCatalog& catalog, SystemLog& systemLog) {
    return findInstalledVideoApps(catalog, systemLog, catalog.applicationFolders());
}

std::vector<AppItem> findInstalledVideoApps(const AppCatalog& catalog, SystemLog& systemLog,
                                            const std::vector<std::string>& folders) {
    std::vector<AppItem> found;
    for (const std::string& folder : folders) {
        const Result<std::vector<std::string>> listing = catalog.listFolder(folder);
        if (!listing.ok()) {
            systemLog.error(kAppLogSubsystem, kAppLogCategory,
                            "Error reading the Applications folder: " + listing.status().message());
            continue;
        }
        for (const std::string& path : listing.value()) {
            if (!catalog.isApplicationPath(path)) continue;
            std::optional<AppItem> item = catalog.appItem(path);
            if (item && catalog.isKnownVideoApp(item->id)) found.push_back(std::move(*item));
        }
    }
    return found;
}

}  // namespace marzipel
