#include "platform/linux/xdg_user_directories.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace marzipel {
namespace {

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
        {"XDG_DOCUMENTS_DIR=\"$HOME/Old\"\nXDG_DOCUMENTS_DIR=\"$HOME/New\"\n", home + "/New"},
        {"XDG_DOCUMENTS_DIR=\"Documents2\"\n", home + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOMEWORK/x\"\n", home + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/unterminated\n", home + "/Documents"},
        {"# XDG_DOCUMENTS_DIR=\"/srv/commented\"\n", home + "/Documents"},
        {"XDG_DOCUMENTS_DIRECTORY=\"/srv/other\"\n", home + "/Documents"},
    };
    for (const auto& [text, expected] : cases) {
        writeFile(folder.file(".config/user-dirs.dirs"), text);
        EXPECT_EQ(XdgUserDirectories(home).documentsDirectory(), expected) << text;
    }
}

}  // namespace
}  // namespace marzipel
