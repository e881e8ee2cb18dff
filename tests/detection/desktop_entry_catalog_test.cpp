#include "detection/desktop_entry_catalog.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_bundle_files.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

class DesktopEntryCatalogTest : public ::testing::Test {
protected:
    /// A visible application entry at "/usr/share/applications/<id>.desktop".
    DesktopEntry& add(const std::string& id, const std::string& name) {
        entries.add(id, name);
        return entries.entries.back();
    }

    FakeDesktopEntries entries;
    SimBundleFiles bundles;
    DesktopEntryCatalog catalog{entries, bundles};
};

TEST_F(DesktopEntryCatalogTest, OnlyVisibleApplicationsBecomeItems) {
    add("mpv", "mpv").iconPath = "/icons/mpv.svg";
    add("nameless", "");
    add("hidden", "H").hidden = true;
    add("menu", "M").noDisplay = true;
    add("link", "L").isApplication = false;

    const auto item = [&](const std::string& id) {
        return catalog.appItem("/usr/share/applications/" + id + ".desktop");
    };
    EXPECT_EQ(item("mpv"), (AppItem{"mpv", "mpv", "/icons/mpv.svg"}));
    EXPECT_EQ(item("nameless"), (AppItem{"nameless", "Unknown App", std::nullopt}));
    for (const char* id : {"hidden", "menu", "link", "missing"}) EXPECT_FALSE(item(id)) << id;
}

TEST_F(DesktopEntryCatalogTest, OtherPathsAreReadAsBundles) {
    bundles.addBundle("/Applications/VLC.app", {{"CFBundleIdentifier", "org.videolan.vlc"},
                                                {"CFBundleName", "VLC"},
                                                {"CFBundleIconFile", "VLCIcon"}});
    EXPECT_EQ(catalog.appItem("/Applications/VLC.app"),
              (AppItem{"org.videolan.vlc", "VLC",
                       "/Applications/VLC.app/Contents/Resources/VLCIcon.icns"}));
    EXPECT_FALSE(catalog.appItem("/Applications/Missing.app"));

    EXPECT_TRUE(catalog.isApplicationPath("/usr/share/applications/vlc.desktop"));
    EXPECT_FALSE(catalog.isApplicationPath("/usr/share/applications/vlc.DESKTOP"));
    EXPECT_FALSE(catalog.isApplicationPath("/Applications/VLC.app"));
}

}  // namespace
}  // namespace marzipel
