#include "detection/installed_video_apps.h"

#include <gtest/gtest.h>

#include "detection/bundle_fixture.h"
#include "platform/local/local_bundle_files.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_bundle_files.h"

namespace marzipel {
namespace {

using testing::writeBundle;

PlistDictionary info(const char* identifier, const char* name) {
    return {{"CFBundleIdentifier", identifier}, {"CFBundleName", name}};
}

TEST(InstalledVideoAppsTest, ScansFoldersInOrderAndSkipsUnreadableOne) {
    TempFolder applications;
    TempFolder system;
    writeBundle(applications / "IINA.app", info("com.colliderli.iina", "IINA"));
    writeBundle(applications / "Notes.app", info("com.example.notes", "Notes"));
    writeBundle(applications / "VLC.APP", info("org.videolan.vlc", "VLC"));
    writeBundle(applications / "Vendor/Infuse.app", info("com.firecore.infuse", "Infuse"));
    writeBundle(applications / "Movist.app.zip", info("com.movist.MovistPro", "Movist"));
    std::filesystem::create_directories(applications / "Broken.app");
    writeBundle(system / "QuickTime Player.app", info("com.apple.QuickTimePlayerX", "QT"));
    std::string missing = applications / "missing";

    LocalBundleFiles files;
    BundleCatalog catalog(files);
    SimSystemLog log;
    std::vector<AppItem> found =
        findInstalledVideoApps(catalog, log, {applications.path(), missing, system.path()});

    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].id, "com.colliderli.iina");
    EXPECT_EQ(found[1].id, "com.apple.QuickTimePlayerX");
    EXPECT_EQ(log.entries, (std::vector<std::string>{
                               "com.orsavelt/MarzipelApp: Error reading the Applications folder: " +
                               *files.listFolder(missing).error}));
}

TEST(InstalledVideoAppsTest, KeepsListingOrderAndDuplicatesAcrossDefaultFolders) {
    SimBundleFiles files;
    files.addBundle("/Applications/VLC.app", info("org.videolan.vlc", "VLC"));
    files.addBundle("/Applications/IINA.app", info("com.colliderli.iina", "IINA"));
    files.addBundle("/System/Applications/QuickTime Player.app",
                    info("com.apple.QuickTimePlayerX", "QuickTime Player"));
    files.addBundle("/System/Applications/VLC.app", info("org.videolan.vlc", "VLC"));
    files.addEntry("/Applications", "/Applications/VLC.app");
    files.addEntry("/Applications", "/Applications/IINA.app");
    files.addEntry("/System/Applications", "/System/Applications/QuickTime Player.app");
    files.addEntry("/System/Applications", "/System/Applications/VLC.app");

    BundleCatalog catalog(files);
    SimSystemLog log;
    std::vector<std::string> ids;
    for (const AppItem& item : findInstalledVideoApps(catalog, log)) ids.push_back(item.id);

    EXPECT_EQ(ids, (std::vector<std::string>{"org.videolan.vlc", "com.colliderli.iina",
                                             "com.apple.QuickTimePlayerX", "org.videolan.vlc"}));
    EXPECT_TRUE(log.entries.empty());
}

}  // namespace
}  // namespace marzipel
