#include "detection/bundle_reader.h"

#include <gtest/gtest.h>

#include "detection/bundle_fixture.h"
#include "platform/local/local_bundle_files.h"

namespace marzipel {
namespace {

using testing::PlistFormat;
using testing::writeBundle;
using testing::writeFile;

class BundleReaderTest : public ::testing::TestWithParam<PlistFormat> {
protected:
    /// Writes a bundle named `name` with `info` in the format under test and reads it back.
    std::optional<AppItem> read(const std::string& name, const PlistDictionary& info) {
        std::string bundle = folder / name;
        writeBundle(bundle, info, GetParam());
        return appItemFromBundle(bundle, files);
    }
    std::string resources(const std::string& name) {
        return folder / name + "/Contents/Resources/";
    }

    TempFolder folder;
    LocalBundleFiles files;
};

TEST_P(BundleReaderTest, ReadsIdentifierNameAndIcon) {
    EXPECT_EQ(read("IINA.app", {{"CFBundleIdentifier", "com.colliderli.iina"},
                                {"CFBundleName", "IINA"},
                                {"CFBundleExecutable", "iina-bin"},
                                {"CFBundleIconFile", "AppIcon"}}),
              (AppItem{"com.colliderli.iina", "IINA", resources("IINA.app") + "AppIcon.icns"}));
}

TEST_P(BundleReaderTest, NameFallsBackToExecutableThenUnknownApp) {
    EXPECT_EQ(read("A.app", {{"CFBundleIdentifier", "a"}, {"CFBundleExecutable", "exec"}})->name,
              "exec");
    EXPECT_EQ(
        read("B.app",
             {{"CFBundleIdentifier", "b"}, {"CFBundleName", 7}, {"CFBundleExecutable", "exec"}})
            ->name,
        "exec");
    std::optional<AppItem> bare = read("C.app", {{"CFBundleIdentifier", "c"}});
    EXPECT_EQ(bare, (AppItem{"c", "Unknown App", std::nullopt}));
}

TEST_P(BundleReaderTest, IconComesFromFirstListedFileThenSingleFile) {
    struct Case {
        const char* bundle;
        PlistDictionary icons;
        std::optional<std::string> expected;  // file name under Contents/Resources
    };
    const std::vector<Case> cases = {
        {"List.app",
         {{"CFBundleIconFiles", PlistArray{"First", "Second.icns"}}, {"CFBundleIconFile", "Other"}},
         "First.icns"},
        {"EmptyList.app",
         {{"CFBundleIconFiles", PlistArray{}}, {"CFBundleIconFile", "AppIcon.icns"}},
         "AppIcon.icns"},
        {"MixedList.app",
         {{"CFBundleIconFiles", PlistArray{"First", 3}}, {"CFBundleIconFile", "Other"}},
         "Other.icns"},
        {"ListIsString.app",
         {{"CFBundleIconFiles", "First"}, {"CFBundleIconFile", "Other"}},
         "Other.icns"},
        {"Upper.app", {{"CFBundleIconFile", "Icon.ICNS"}}, "Icon.ICNS.icns"},
        {"NumberIcon.app", {{"CFBundleIconFile", 4}}, std::nullopt},
        {"NoIcon.app", {}, std::nullopt},
    };
    for (const Case& c : cases) {
        PlistDictionary info = c.icons;
        info["CFBundleIdentifier"] = "id";
        std::optional<AppItem> item = read(c.bundle, info);
        ASSERT_TRUE(item) << c.bundle;
        std::optional<std::string> expected;
        if (c.expected) expected = resources(c.bundle) + *c.expected;
        EXPECT_EQ(item->iconPath, expected) << c.bundle;
    }
}

TEST_P(BundleReaderTest, WithoutStringIdentifierThereIsNoItem) {
    EXPECT_FALSE(read("Number.app", {{"CFBundleIdentifier", 42}, {"CFBundleName", "N"}}));
    EXPECT_FALSE(read("Missing.app", {{"CFBundleName", "M"}}));
    EXPECT_FALSE(read("List.app", {{"CFBundleIdentifier", PlistArray{"a"}}}));
}

INSTANTIATE_TEST_SUITE_P(Formats, BundleReaderTest,
                         ::testing::Values(PlistFormat::xml, PlistFormat::binary),
                         [](const auto& info) {
                             return info.param == PlistFormat::xml ? "Xml" : "Binary";
                         });

TEST(BundleReaderFilesTest, UnreadableBundlesGiveNoItem) {
    TempFolder folder;
    LocalBundleFiles files;
    writeFile(folder / "File.app", "not a folder");
    std::filesystem::create_directories(folder / "Empty.app");
    writeFile(folder / "Garbage.app/Contents/Info.plist", "\x01\x02 not a property list");
    testing::writePlist(folder / "Array.app/Contents/Info.plist",
                        PlistValue(PlistArray{"CFBundleIdentifier", "x"}), PlistFormat::xml);
    std::filesystem::create_directories(folder / "Dir.app/Contents/Info.plist");

    for (const char* name :
         {"Missing.app", "File.app", "Empty.app", "Garbage.app", "Array.app", "Dir.app"}) {
        EXPECT_FALSE(appItemFromBundle(folder / name, files)) << name;
    }
}

TEST(BundleReaderFilesTest, OversizedInfoPlistIsNotRead) {
    TempFolder folder;
    LocalBundleFiles files;
    std::string padding(BundleFiles::maxPropertyListBytes, 'x');
    writeBundle(folder / "Big.app", {{"CFBundleIdentifier", "big"}, {"Padding", padding}});
    EXPECT_FALSE(appItemFromBundle(folder / "Big.app", files));
}

TEST(BundleReaderFilesTest, TrailingSlashDoesNotDoubleInIconPath) {
    TempFolder folder;
    LocalBundleFiles files;
    writeBundle(folder / "VLC.app",
                {{"CFBundleIdentifier", "org.videolan.vlc"}, {"CFBundleIconFile", "VLC.icns"}});
    std::optional<AppItem> item = appItemFromBundle(folder / "VLC.app/", files);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->iconPath, folder / "VLC.app/Contents/Resources/VLC.icns");
}

}  // namespace
}  // namespace marzipel
