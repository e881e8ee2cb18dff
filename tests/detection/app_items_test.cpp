#include <gtest/gtest.h>

#include "detection/bundle_reader.h"
#include "detection/desktop_entry_catalog.h"
#include "detection/running_app_items.h"
#include "platform/local/local_bundle_files.h"
#include "platform/plist/plist_codec.h"
#include "platform/sim/sim_bundle_files.h"
#include "platform/sim/sim_workspace.h"
#include "support/fake_desktop_entries.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

// Both encodings of Info.plist, and the plain fallbacks (name from the executable, "Unknown
// App", an icon name with another extension, an identifier that is no string), are read from
// disk by the catalogue scenario; these are the odd kinds it does not hold.
TEST(BundleReaderTest, IdentifierNameAndIconWithTheirFallbacks) {
    struct Case {
        PlistDictionary info;  // with the identifier "id"
        const char* name;
        std::optional<std::string> icon = std::nullopt;  // file name under Contents/Resources
    };
    const std::vector<Case> cases = {
        {{{"CFBundleName", 7}, {"CFBundleExecutable", "exec"}}, "exec"},
        {{{"CFBundleIconFiles", PlistArray{"First", "Second.icns"}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "First.icns"},
        {{{"CFBundleIconFiles", PlistArray{"First", 3}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "Other.icns"},
        {{{"CFBundleIconFile", 4}}, "Unknown App"},
    };
    const std::string bundle = "/Applications/App.app";
    for (std::size_t i = 0; i < cases.size(); ++i) {
        PlistDictionary info = cases[i].info;
        info.emplace("CFBundleIdentifier", "id");
        std::optional<std::string> icon;
        if (cases[i].icon) icon = bundle + "/Contents/Resources/" + *cases[i].icon;
        EXPECT_EQ(appItemFromInfoPlist(bundle, info), (AppItem{"id", cases[i].name, icon}))
            << "case " << i;
    }
    EXPECT_FALSE(appItemFromInfoPlist(bundle, PlistArray{"CFBundleIdentifier", "x"}));
}

// Listing, a folder that cannot be listed, and reading bundles through these files are run by
// the catalogue scenario.
TEST(BundleReaderTest, UnreadableBundlesGiveNothingAndASlashDoesNotDouble) {
    TempFolder folder;
    LocalBundleFiles files;
    const auto writeInfo = [&](const std::string& bundle, const PlistDictionary& info) {
        writeFile(folder / (bundle + "/Contents/Info.plist"), toXmlPropertyList(info));
    };
    writeFile(folder / "File.app", "not a folder");
    std::filesystem::create_directories(folder / "Empty.app");
    writeFile(folder / "Garbage.app/Contents/Info.plist", "\x01\x02 not a property list");
    writeInfo("Big.app", {{"CFBundleIdentifier", "big"},
                          {"Padding", std::string(BundleFiles::maxPropertyListBytes, 'x')}});
    for (const char* name : {"File.app", "Empty.app", "Garbage.app", "Big.app"})
        EXPECT_FALSE(appItemFromBundle(folder / name, files)) << name;

    writeInfo("VLC.app",
              {{"CFBundleIdentifier", "org.videolan.vlc"}, {"CFBundleIconFile", "VLC.icns"}});
    std::optional<AppItem> item = appItemFromBundle(folder / "VLC.app/", files);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->iconPath, folder / "VLC.app/Contents/Resources/VLC.icns");
}

// Entries hidden from menus, and the shadowing of system entries, are read from disk by the
// desktop entries' own test.
TEST(DesktopEntryCatalogTest, OnlyVisibleApplicationsBecomeItems) {
    FakeDesktopEntries entries;
    SimBundleFiles bundles;
    DesktopEntryCatalog catalog{entries, bundles};
    const auto add = [&](const std::string& id, const std::string& name) -> DesktopEntry& {
        entries.add(id, name);
        return entries.entries.back();
    };
    add("mpv", "mpv").iconPath = "/icons/mpv.svg";
    add("nameless", "");
    add("hidden", "H").hidden = true;
    add("link", "L").isApplication = false;

    const auto item = [&](const std::string& id) {
        return catalog.appItem("/usr/share/applications/" + id + ".desktop");
    };
    EXPECT_EQ(item("mpv"), (AppItem{"mpv", "mpv", "/icons/mpv.svg"}));
    EXPECT_EQ(item("nameless"), (AppItem{"nameless", "Unknown App", std::nullopt}));
    for (const char* id : {"hidden", "link", "missing"}) EXPECT_FALSE(item(id)) << id;
}

TEST(RunningAppItemsTest, RegularAppsInWorkspaceOrderWithFallbacks) {
    SimBundleFiles files;
    files.addBundle("/Applications/IINA.app", {{"CFBundleIdentifier", "com.colliderli.iina"},
                                               {"CFBundleName", "IINA"},
                                               {"CFBundleIconFile", "AppIcon"}});
    SimWorkspace workspace;
    workspace.applications = {
        {30, "com.colliderli.iina", "IINA (running)", "/Applications/IINA.app"},
        {31, "com.example.agent", "Agent", std::nullopt, ActivationPolicy::accessory},
        {32, "com.example.gone", "Gone", "/Applications/Gone.app"},
        {33, std::nullopt, std::nullopt, std::nullopt},
        {35, "com.colliderli.iina", "IINA (running)", "/Applications/IINA.app"},
    };
    BundleCatalog catalog(files);

    AppItem iina{"com.colliderli.iina", "IINA",
                 "/Applications/IINA.app/Contents/Resources/AppIcon.icns"};
    EXPECT_EQ(runningAppItems(workspace, catalog),
              (std::vector<AppItem>{iina,
                                    {"com.example.gone", "Gone", std::nullopt},
                                    {"", "Unknown App", std::nullopt},
                                    iina}));
}

}  // namespace
}  // namespace marzipel
