#include "platform/local/local_bundle_files.h"

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

Result<std::vector<std::string>> LocalBundleFiles::listFolder(const std::string& folder) const {
    auto failure = [&](const std::error_code& error) {
        return Status::failure("The folder \"" + folder +
                               "\" could not be read: " + error.message());
    };
    std::error_code error;
    const fs::path base = fs::absolute(folder, error);
    if (error) return failure(error);
    std::vector<std::string> paths;
    fs::directory_iterator it(base, error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        paths.push_back(it->path().string());
    }
    if (error) return failure(error);
    return paths;
}

}  // namespace marzipel
