#include "detection/app_catalog.h"

#include <algorithm>

#include "detection/bundle_reader.h"
#include "detection/known_video_apps.h"

namespace marzipel {

std::optional<AppItem> BundleCatalog::appItem(const std::string& path) const {
    return appItemFromBundle(path, files_);
}

std::vector<std::string> BundleCatalog::applicationFolders() const {
    return {"/Applications", "/System/Applications"};
}

bool BundleCatalog::isApplicationPath(std::string_view path) const {
    return path.ends_with(".app");
}

Result<std::vector<std::string>> BundleCatalog::listFolder(const std::string& folder) const {
    return files_.listFolder(folder);
}

bool BundleCatalog::isKnownVideoApp(std::string_view id) const {
    return std::ranges::find(kKnownVideoAppIds, id) != kKnownVideoAppIds.end();
}

}  // namespace marzipel
