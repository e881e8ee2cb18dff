#include "detection/installed_video_apps.h"

#include <gtest/gtest.h>

#include "detection/bundle_fixture.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_bundle_files.h"

namespace marzipel {
namespace {

using testing::writeBundle;

PlistDictionary info(const char* identifier, const char* name) {
    return {{"CFBundleIdentifier", identifier}, {"CFBundleName", name}};
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
