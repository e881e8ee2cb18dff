#include "platform/local/local_bundle_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "detection/bundle_fixture.h"

namespace marzipel {
namespace {

TEST(LocalBundleFilesTest, ListsDirectEntriesAsAbsolutePathsIncludingHiddenOnes) {
    TempFolder folder;
    writeFile(folder / ".hidden", "");
    writeFile(folder / "Vendor/Inner.app/Contents/Info.plist", "");
    std::filesystem::create_directories(folder / "IINA.app");

    LocalBundleFiles files;
    FolderListing listing = files.listFolder(folder.path());
    EXPECT_FALSE(listing.error);
    std::ranges::sort(listing.paths);
    EXPECT_EQ(listing.paths, (std::vector<std::string>{folder / ".hidden", folder / "IINA.app",
                                                       folder / "Vendor"}));
    EXPECT_TRUE(files.isDirectory(folder / "IINA.app"));
    EXPECT_FALSE(files.isDirectory(folder / ".hidden"));
    EXPECT_FALSE(files.isDirectory(folder / "nothing"));
    EXPECT_FALSE(files.isDirectory(""));
}

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
