#include "platform/local/local_bundle_files.h"

#include "platform/local/folder_listing.h"

#include <filesystem>
#include <system_error>

#include "platform/plist/plist_codec.h"

namespace marzipel {
namespace fs = std::filesystem;

bool LocalBundleFiles::isDirectory(const std::string& path) const {
    std::error_code error;
    return !path.empty() && fs::is_directory(path, error);
}

std::optional<PlistValue> LocalBundleFiles::readPropertyList(const std::string& path) const {
    return readPropertyListFile(path, maxPropertyListBytes);
}

FolderListing LocalBundleFiles::listFolder(const std::string& folder) const {
    return listFolderEntries(folder);
}

}  // namespace marzipel
