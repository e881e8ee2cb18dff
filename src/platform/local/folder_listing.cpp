#include "platform/local/folder_listing.h"

#include <filesystem>
#include <system_error>

namespace marzipel {

FolderListing listFolderEntries(const std::string& folder) {
    namespace fs = std::filesystem;
    auto failure = [&](const std::error_code& error) {
        return FolderListing{{},
                             "The folder \"" + folder + "\" could not be read: " + error.message()};
    };
    std::error_code error;
    const fs::path base = fs::absolute(folder, error);
    if (error) return failure(error);
    FolderListing listing;
    fs::directory_iterator it(base, error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        listing.paths.push_back(it->path().string());
    }
    if (error) return failure(error);
    return listing;
}

}  // namespace marzipel
