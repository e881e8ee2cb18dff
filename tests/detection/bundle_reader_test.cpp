#include "detection/bundle_reader.h"

#include <gtest/gtest.h>

#include "detection/bundle_fixture.h"
#include "platform/local/local_bundle_files.h"

namespace marzipel {
namespace {

using testing::PlistFormat;
using testing::writeBundle;

class BundleReaderTest : public ::testing::TestWithParam<PlistFormat> {};

TEST_P(BundleReaderTest, IdentifierNameAndIconWithTheirFallbacks) {
    struct Case {
        const char* bundle;
        PlistDictionary info;  // with the identifier "id" unless it has one of its own
        const char* name;      // nullptr: no item at all
        std::optional<std::string> icon = std::nullopt;  // file name under Contents/Resources
    };
    const std::vector<Case> cases = {
        {"IINA.app",
         {{"CFBundleName", "IINA"},
          {"CFBundleExecutable", "iina"},
          {"CFBundleIconFile", "AppIcon"}},
         "IINA",
         "AppIcon.icns"},
        {"Exec.app", {{"CFBundleExecutable", "exec"}}, "exec"},
        {"NumberName.app", {{"CFBundleName", 7}, {"CFBundleExecutable", "exec"}}, "exec"},
        {"Bare.app", {}, "Unknown App"},
        {"List.app",
         {{"CFBundleIconFiles", PlistArray{"First", "Second.icns"}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "First.icns"},
        {"EmptyList.app",
         {{"CFBundleIconFiles", PlistArray{}}, {"CFBundleIconFile", "AppIcon.icns"}},
         "Unknown App",
         "AppIcon.icns"},
        {"MixedList.app",
         {{"CFBundleIconFiles", PlistArray{"First", 3}}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "Other.icns"},
        {"ListIsString.app",
         {{"CFBundleIconFiles", "First"}, {"CFBundleIconFile", "Other"}},
         "Unknown App",
         "Other.icns"},
        {"Upper.app", {{"CFBundleIconFile", "Icon.ICNS"}}, "Unknown App", "Icon.ICNS.icns"},
        {"NumberIcon.app", {{"CFBundleIconFile", 4}}, "Unknown App"},
        {"NumberId.app", {{"CFBundleIdentifier", 42}, {"CFBundleName", "N"}}, nullptr},
        {"ListId.app", {{"CFBundleIdentifier", PlistArray{"a"}}}, nullptr},
    };
    TempFolder folder;
    LocalBundleFiles files;
    for (const Case& c : cases) {
        PlistDictionary info = c.info;
        info.emplace("CFBundleIdentifier", "id");
        const std::string bundle = folder / c.bundle;
        writeBundle(bundle, info, GetParam());
        std::optional<AppItem> item = appItemFromBundle(bundle, files);
        if (!c.name) {
            EXPECT_FALSE(item) << c.bundle;
            continue;
        }
        std::optional<std::string> icon;
        if (c.icon) icon = bundle + "/Contents/Resources/" + *c.icon;
        EXPECT_EQ(item, (AppItem{"id", c.name, icon})) << c.bundle;
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, BundleReaderTest,
                         ::testing::Values(PlistFormat::xml, PlistFormat::binary),
                         [](const auto& info) {
                             return info.param == PlistFormat::xml ? "Xml" : "Binary";
                         });

TEST(BundleReaderFilesTest, UnreadableBundlesGiveNoItemAndASlashDoesNotDouble) {
    TempFolder folder;
    LocalBundleFiles files;
    writeFile(folder / "File.app", "not a folder");
    std::filesystem::create_directories(folder / "Empty.app");
    writeFile(folder / "Garbage.app/Contents/Info.plist", "\x01\x02 not a property list");
    testing::writePlist(folder / "Array.app/Contents/Info.plist",
                        PlistValue(PlistArray{"CFBundleIdentifier", "x"}), PlistFormat::xml);
    std::filesystem::create_directories(folder / "Dir.app/Contents/Info.plist");
    writeBundle(folder / "Big.app",
                {{"CFBundleIdentifier", "big"},
                 {"Padding", std::string(BundleFiles::maxPropertyListBytes, 'x')}});
    for (const char* name :
         {"File.app", "Empty.app", "Garbage.app", "Array.app", "Dir.app", "Big.app"}) {
        EXPECT_FALSE(appItemFromBundle(folder / name, files)) << name;
    }

    writeBundle(folder / "VLC.app",
                {{"CFBundleIdentifier", "org.videolan.vlc"}, {"CFBundleIconFile", "VLC.icns"}});
    std::optional<AppItem> item = appItemFromBundle(folder / "VLC.app/", files);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->iconPath, folder / "VLC.app/Contents/Resources/VLC.icns");
}

}  // namespace
}  // namespace marzipel
