#include "detection/desktop_entry_catalog.h"

#include <map>

#include <gtest/gtest.h>

#include "platform/sim/sim_bundle_files.h"

namespace marzipel {
namespace {

/// Entries held in memory by path.
class FakeDesktopEntries final : public DesktopEntries {
public:
    std::optional<DesktopEntry> readEntry(const std::string& path) const override {
        auto found = byPath.find(path);
        if (found == byPath.end()) return std::nullopt;
        return found->second;
    }
    std::vector<std::string> applicationFolders() const override { return {}; }
    FolderListing listFolder(const std::string&) const override { return {}; }
    std::optional<DesktopEntry> findById(std::string_view) const override { return {}; }
    std::vector<DesktopEntry> allEntries() const override { return {}; }

    std::map<std::string, DesktopEntry> byPath;
};

class DesktopEntryCatalogTest : public ::testing::Test {
protected:
    /// A visible application entry at "/apps/<id>.desktop".
    DesktopEntry& add(const std::string& id, const std::string& name) {
        const std::string path = "/apps/" + id + ".desktop";
        DesktopEntry& entry = entries.byPath[path];
        entry.id = id;
        entry.path = path;
        entry.name = name;
        entry.isApplication = true;
        return entry;
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

    EXPECT_EQ(catalog.appItem("/apps/mpv.desktop"), (AppItem{"mpv", "mpv", "/icons/mpv.svg"}));
    EXPECT_EQ(catalog.appItem("/apps/nameless.desktop"),
              (AppItem{"nameless", "Unknown App", std::nullopt}));
    EXPECT_FALSE(catalog.appItem("/apps/hidden.desktop"));
    EXPECT_FALSE(catalog.appItem("/apps/menu.desktop"));
    EXPECT_FALSE(catalog.appItem("/apps/link.desktop"));
    EXPECT_FALSE(catalog.appItem("/apps/missing.desktop"));
}

TEST_F(DesktopEntryCatalogTest, OtherPathsAreReadAsBundles) {
    bundles.addBundle("/Applications/VLC.app", {{"CFBundleIdentifier", "org.videolan.vlc"},
                                                {"CFBundleName", "VLC"},
                                                {"CFBundleIconFile", "VLCIcon"}});
    EXPECT_EQ(catalog.appItem("/Applications/VLC.app"),
              (AppItem{"org.videolan.vlc", "VLC",
                       "/Applications/VLC.app/Contents/Resources/VLCIcon.icns"}));
    EXPECT_FALSE(catalog.appItem("/Applications/Missing.app"));

    EXPECT_TRUE(catalog.isApplicationPath("/apps/vlc.desktop"));
    EXPECT_FALSE(catalog.isApplicationPath("/apps/vlc.DESKTOP"));
    EXPECT_FALSE(catalog.isApplicationPath("/Applications/VLC.app"));
}

TEST_F(DesktopEntryCatalogTest, KnowsTheLinuxPlayersByTheirDesktopIds) {
    for (std::string_view id : {"org.videolan.VLC", "vlc", "mpv", "io.mpv.Mpv", "org.gnome.Totem",
                                "tv.kodi.Kodi", "org.kde.haruna"}) {
        EXPECT_TRUE(catalog.isKnownVideoApp(id)) << id;
    }
    for (std::string_view id : {"org.videolan.vlc", "VLC", "org.gnome.TextEditor", ""}) {
        EXPECT_FALSE(catalog.isKnownVideoApp(id)) << id;
    }
}

}  // namespace
}  // namespace marzipel
