#include "platform/local/local_bundle_files.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace marzipel {
namespace {

// Listing, and reading bundles through these files, are run by the catalogue scenario.
TEST(LocalBundleFilesTest, FolderThatCannotBeListedGivesErrorNamingIt) {
    TempFolder folder;
    writeFile(folder / "plain", "");
    LocalBundleFiles files;
    for (const std::string& path : {folder / "missing", folder / "plain"}) {
        FolderListing listing = files.listFolder(path);
        ASSERT_TRUE(listing.error) << path;
        EXPECT_NE(listing.error->find(path), std::string::npos) << *listing.error;
        EXPECT_TRUE(listing.paths.empty());
    }
}

}  // namespace
}  // namespace marzipel
