#include "detection/bundle_reader.h"

#include <gtest/gtest.h>

#include "platform/local/local_bundle_files.h"
#include "platform/plist/plist_codec.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

// Both encodings of Info.plist are read from disk by the catalogue scenario.
TEST(BundleReaderTest, IdentifierNameAndIconWithTheirFallbacks) {
    struct Case {
        PlistDictionary info;  // with the identifier "id" unless it has one of its own
        const char* name;      // nullptr: no item at all
        std::optional<std::string> icon = std::nullopt;  // file name under Contents/Resources
    };
    const std::vector<Case> cases = {
        {{{"CFBundleName", "IINA"},
          {"CFBundleExecutable", "iina"},
          {"CFBundleIconFile", "AppIcon"}},
         "IINA",
         "AppIcon.icns"},
        {{{"CFBundleExecutable", "exec"}}, "exec"},
        {{{"CFBundleName", 7}, {"CFBundleExecutable", "exec"}}, "exec"},
        {{}, "Unknown App"},
        {{{"CFBundleIconFiles", PlistArray{"First", "Second.icns"}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "First.icns"},
        {{{"CFBundleIconFiles", PlistArray{}}, {"CFBundleIconFile", "AppIcon.icns"}},
         "Unknown App",
         "AppIcon.icns"},
        {{{"CFBundleIconFiles", PlistArray{"First", 3}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "Other.icns"},
        {{{"CFBundleIconFiles", "First"}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "Other.icns"},
        {{{"CFBundleIconFile", "Icon.ICNS"}}, "Unknown App", "Icon.ICNS.icns"},
        {{{"CFBundleIconFile", 4}}, "Unknown App"},
        {{{"CFBundleIdentifier", 42}, {"CFBundleName", "N"}}, nullptr},
        {{{"CFBundleIdentifier", PlistArray{"a"}}}, nullptr},
    };
    const std::string bundle = "/Applications/App.app";
    for (std::size_t i = 0; i < cases.size(); ++i) {
        PlistDictionary info = cases[i].info;
        info.emplace("CFBundleIdentifier", "id");
        std::optional<AppItem> item = appItemFromInfoPlist(bundle, info);
        if (!cases[i].name) {
            EXPECT_FALSE(item) << "case " << i;
            continue;
        }
        std::optional<std::string> icon;
        if (cases[i].icon) icon = bundle + "/Contents/Resources/" + *cases[i].icon;
        EXPECT_EQ(item, (AppItem{"id", cases[i].name, icon})) << "case " << i;
    }
    EXPECT_FALSE(appItemFromInfoPlist(bundle, PlistArray{"CFBundleIdentifier", "x"}));
}

// Listing, and reading bundles through these files, are run by the catalogue scenario.
TEST(BundleReaderTest, UnreadableBundlesAndFoldersGiveNothingAndASlashDoesNotDouble) {
    TempFolder folder;
    LocalBundleFiles files;
    const auto writeInfo = [&](const std::string& bundle, const PlistDictionary& info) {
        writeFile(folder / (bundle + "/Contents/Info.plist"), toXmlPropertyList(info));
    };
    writeFile(folder / "File.app", "not a folder");
    std::filesystem::create_directories(folder / "Empty.app");
    writeFile(folder / "Garbage.app/Contents/Info.plist", "\x01\x02 not a property list");
    std::filesystem::create_directories(folder / "Dir.app/Contents/Info.plist");
    writeInfo("Big.app", {{"CFBundleIdentifier", "big"},
                          {"Padding", std::string(BundleFiles::maxPropertyListBytes, 'x')}});
    for (const char* name : {"File.app", "Empty.app", "Garbage.app", "Dir.app", "Big.app"}) {
        EXPECT_FALSE(appItemFromBundle(folder / name, files)) << name;
    }
    for (const std::string& path : {folder / "missing", folder / "File.app"}) {
        FolderListing listing = files.listFolder(path);
        ASSERT_TRUE(listing.error) << path;
        EXPECT_NE(listing.error->find(path), std::string::npos) << *listing.error;
        EXPECT_TRUE(listing.paths.empty());
    }

    writeInfo("VLC.app",
              {{"CFBundleIdentifier", "org.videolan.vlc"}, {"CFBundleIconFile", "VLC.icns"}});
    std::optional<AppItem> item = appItemFromBundle(folder / "VLC.app/", files);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->iconPath, folder / "VLC.app/Contents/Resources/VLC.icns");
}

}  // namespace
}  // namespace marzipel
