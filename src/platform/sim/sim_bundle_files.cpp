#include "platform/sim/sim_bundle_files.h"

namespace marzipel {

bool SimBundleFiles::isDirectory(const std::string& path) const {
    return directories.contains(path) || folders.contains(path);
}

std::optional<PlistValue> SimBundleFiles::readPropertyList(const std::string& path) const {
    reads.push_back(path);
    auto it = propertyLists.find(path);
    if (it == propertyLists.end()) return std::nullopt;
    return it->second;
}

Result<std::vector<std::string>> SimBundleFiles::listFolder(const std::string& folder) const {
    if (auto error = folderErrors.find(folder); error != folderErrors.end()) {
        return Status::failure(error->second);
    }
    auto it = folders.find(folder);
    if (it == folders.end()) return Status::failure("No such file or directory: " + folder);
    return it->second;
}

void SimBundleFiles::addBundle(const std::string& path, PlistDictionary info) {
    directories.insert(path);
    propertyLists[path + "/Contents/Info.plist"] = PlistValue(std::move(info));
}

void SimBundleFiles::addEntry(const std::string& folder, const std::string& path) {
    folders[folder].push_back(path);
}

}  // namespace marzipel
