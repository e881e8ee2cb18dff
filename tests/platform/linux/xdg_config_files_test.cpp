// The files the program keeps in or reads from the user's configuration folder: its autostart
// entry and the user's named folders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/xdg/xdg_autostart_login_item_service.h"
#include "platform/linux/xdg/xdg_user_directories.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

using ::testing::HasSubstr;

TEST(XdgAutostartLoginItemServiceTest, RegistersAStartableEntryOrSaysWhyNot) {
    TempFolder temp;
    const std::string entry = temp / "autostart/com.orsavelt.Marzipel.desktop";
    XdgAutostartLoginItemService service("/opt/Marzipel/bin/marzipel", temp.path().string());
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    const std::string plain = "[Desktop Entry]\nType=Application\nName=Marzipel\nExec=marzipel\n";
    const std::pair<std::string, LoginItemStatus> cases[] = {
        {plain, LoginItemStatus::enabled},
        {plain + "X-GNOME-Autostart-enabled=true\nHidden=false\n", LoginItemStatus::enabled},
        {plain + "X-GNOME-Autostart-enabled=false\n", LoginItemStatus::notRegistered},
        {"[Other]\nExec=marzipel\n", LoginItemStatus::notRegistered},
        {plain + "Hidden=true\n", LoginItemStatus::notRegistered},
    };
    for (const auto& [contents, status] : cases) {
        writeFile(entry, contents);
        EXPECT_EQ(service.status(), status) << contents;
    }
    // Over the entry the desktop's settings left switched off.
    ASSERT_TRUE(service.registerItem().ok());
    EXPECT_EQ(service.status(), LoginItemStatus::enabled);
    EXPECT_EQ(readFile(entry),
              "[Desktop Entry]\nType=Application\nName=Marzipel\n"
              "Exec=\"/opt/Marzipel/bin/marzipel\"\nIcon=com.orsavelt.Marzipel\n"
              "Terminal=false\nX-GNOME-Autostart-enabled=true\n");
    EXPECT_TRUE(service.unregisterItem().ok());
    EXPECT_EQ(service.status(), LoginItemStatus::notRegistered);
    EXPECT_TRUE(service.unregisterItem().ok());

    // Program paths are quoted for the desktop's reader, or refused with the reason.
    XdgAutostartLoginItemService odd("/home/ann/my apps/\"Mar$zi`pel\\100%", temp.path().string());
    ASSERT_TRUE(odd.registerItem().ok());
    EXPECT_THAT(readFile(entry),
                HasSubstr(R"(Exec="/home/ann/my apps/\\"Mar\\$zi\\`pel\\\\100%%")"));

    const Status result =
        XdgAutostartLoginItemService("/opt/\xff/marzipel", temp.path().string()).registerItem();
    EXPECT_FALSE(result.ok());
    EXPECT_THAT(result.message(), HasSubstr("UTF-8"));

    // A configuration "folder" that is a file: neither change can be made, and both say where.
    const std::string notAFolder = temp / "config-file";
    writeFile(notAFolder, "");
    XdgAutostartLoginItemService blocked("/usr/bin/marzipel", notAFolder);
    for (const Status& refused : {blocked.registerItem(), blocked.unregisterItem()}) {
        EXPECT_FALSE(refused.ok());
        EXPECT_THAT(refused.message(), HasSubstr(notAFolder));
    }
}

// Only an entry that is a path from the home or the root counts; without one the documents are
// in the home.
TEST(XdgUserDirectoriesTest, ReadsTheDocumentsEntryAsTheShellWould) {
    TempFolder folder;
    const std::string home = folder.path().string();
    EXPECT_EQ(XdgUserDirectories(home).documentsDirectory(), home + "/Documents");
    const std::pair<std::string_view, std::string> cases[] = {
        {"# written by xdg-user-dirs-update\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
         "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\nXDG_MUSIC_DIR=\"$HOME/Musik\"\n",
         home + "/Dokumente"},
        {"XDG_DOCUMENTS_DIR=\"/srv/docs\"\n", "/srv/docs"},
        {"  XDG_DOCUMENTS_DIR=\"${HOME}/My \\\"Papers\\\"/\"", home + "/My \"Papers\""},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\"\n", home},
        {"XDG_DOCUMENTS_DIR=\"Documents2\"\n", home + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOMEWORK/x\"\n", home + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/unterminated\n", home + "/Documents"},
        {"# XDG_DOCUMENTS_DIR=\"/srv/commented\"\n", home + "/Documents"},
    };
    for (const auto& [text, expected] : cases) {
        writeFile(folder.file(".config/user-dirs.dirs"), text);
        EXPECT_EQ(XdgUserDirectories(home).documentsDirectory(), expected) << text;
    }
}

}  // namespace
}  // namespace marzipel
