#include "platform/linux/xdg_autostart_login_item_service.h"

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/linux/key_file.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

class XdgAutostartLoginItemServiceTest : public ::testing::Test {
protected:
    TempFolder temp;
    std::string entry = temp / "autostart/com.orsavelt.Marzipel.desktop";
    XdgAutostartLoginItemService service{"/opt/Marzipel/bin/marzipel", temp.path().string()};
};

TEST_F(XdgAutostartLoginItemServiceTest,
       OnlyAnEntryThatWouldStartIsEnabledAndRegisteringWritesOne) {
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    const std::string plain = "[Desktop Entry]\nType=Application\nName=Marzipel\nExec=marzipel\n";
    const std::pair<std::string, LoginItemStatus> cases[] = {
        {plain, LoginItemStatus::enabled},
        {plain + "X-GNOME-Autostart-enabled=true\nHidden=false\n", LoginItemStatus::enabled},
        {plain + "X-GNOME-Autostart-enabled=false\n", LoginItemStatus::notRegistered},
        {"Exec=marzipel\n", LoginItemStatus::notRegistered},
        {"[Other]\nExec=marzipel\n", LoginItemStatus::notRegistered},
        {plain + "Hidden=true\n", LoginItemStatus::notRegistered},
    };
    for (const auto& [contents, status] : cases) {
        writeFile(entry, contents);
        EXPECT_EQ(service.status(), status) << contents;
    }
    ASSERT_TRUE(service.registerItem().succeeded);
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);

    KeyFile file;
    ASSERT_EQ(file.loadFile(entry, 1 << 20), "");
    EXPECT_EQ(file.string("Desktop Entry", "Type"), "Application");
    EXPECT_EQ(file.string("Desktop Entry", "Name"), "Marzipel");
    EXPECT_EQ(file.string("Desktop Entry", "Exec"), "\"/opt/Marzipel/bin/marzipel\"");
    EXPECT_EQ(file.string("Desktop Entry", "Icon"), "com.orsavelt.Marzipel");
    EXPECT_EQ(file.boolean("Desktop Entry", "X-GNOME-Autostart-enabled"), true);
    EXPECT_FALSE(file.boolean("Desktop Entry", "Hidden"));

    ASSERT_TRUE(service.registerItem().succeeded);
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);

    EXPECT_TRUE(service.unregisterItem().succeeded);
    EXPECT_FALSE(fs::exists(entry));
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(service.unregisterItem().succeeded);
}

TEST_F(XdgAutostartLoginItemServiceTest, ProgramPathsAreQuotedOrRefusedWithTheReason) {
    XdgAutostartLoginItemService odd("/home/ann/my apps/\"Mar$zi`pel\\100%", temp.path().string());
    ASSERT_TRUE(odd.registerItem().succeeded);
    KeyFile file;
    ASSERT_EQ(file.loadFile(entry, 1 << 20), "");
    EXPECT_EQ(file.string("Desktop Entry", "Exec"),
              "\"/home/ann/my apps/\\\"Mar\\$zi\\`pel\\\\100%%\"");

    LoginItemResult result =
        XdgAutostartLoginItemService("/opt/\xff/marzipel", temp.path().string()).registerItem();
    EXPECT_FALSE(result.succeeded);
    EXPECT_NE(result.errorText.find("UTF-8"), std::string::npos);

    const std::string notAFolder = temp / "config-file";
    writeFile(notAFolder, "");
    result = XdgAutostartLoginItemService("/usr/bin/marzipel", notAFolder).registerItem();
    EXPECT_FALSE(result.succeeded);
    EXPECT_NE(result.errorText.find(notAFolder), std::string::npos) << result.errorText;

    XdgAutostartLoginItemService nowhere("/usr/bin/marzipel", std::nullopt);
    EXPECT_FALSE(nowhere.registerItem().succeeded);
    EXPECT_FALSE(nowhere.registerItem().errorText.empty());
    EXPECT_EQ(nowhere.status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(nowhere.unregisterItem().succeeded);
}

TEST_F(XdgAutostartLoginItemServiceTest, AReadOnlyFolderRefusesBothChanges) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not refuse anything to root";
    ASSERT_TRUE(service.registerItem().succeeded);
    fs::permissions(temp.path() / "autostart", fs::perms::owner_write, fs::perm_options::remove);

    LoginItemResult registered = service.registerItem();
    LoginItemResult unregistered = service.unregisterItem();
    fs::permissions(temp.path() / "autostart", fs::perms::owner_write, fs::perm_options::add);

    EXPECT_FALSE(registered.succeeded);
    EXPECT_NE(registered.errorText.find("Permission denied"), std::string::npos)
        << registered.errorText;
    EXPECT_FALSE(unregistered.succeeded);
    EXPECT_NE(unregistered.errorText.find("Permission denied"), std::string::npos)
        << unregistered.errorText;
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);
}

}  // namespace
}  // namespace marzipel
