#include "platform/linux/xdg_user_directories.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace marzipel {
namespace {

class XdgUserDirectoriesTest : public ::testing::Test {
protected:
    std::optional<std::string> documentsWith(std::string_view userDirs) {
        writeFile(folder.file(".config/user-dirs.dirs"), userDirs);
        return XdgUserDirectories(home).documentsDirectory();
    }

    TempFolder folder;
    std::string home = folder.path().string();
};

TEST_F(XdgUserDirectoriesTest, ReadsTheDocumentsEntryAsTheShellWould) {
    EXPECT_EQ(documentsWith("# written by xdg-user-dirs-update\n"
                            "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                            "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                            "XDG_MUSIC_DIR=\"$HOME/Musik\"\n"),
              home + "/Dokumente");
    EXPECT_EQ(documentsWith("XDG_DOCUMENTS_DIR=\"/srv/docs\"\n"), "/srv/docs");
    EXPECT_EQ(documentsWith("  XDG_DOCUMENTS_DIR=\"${HOME}/My \\\"Papers\\\"/\""),
              home + "/My \"Papers\"");
    EXPECT_EQ(documentsWith("XDG_DOCUMENTS_DIR=\"$HOME/\"\n"), home);
    EXPECT_EQ(documentsWith("XDG_DOCUMENTS_DIR=\"$HOME/Old\"\nXDG_DOCUMENTS_DIR=\"$HOME/New\"\n"),
              home + "/New");
}

TEST_F(XdgUserDirectoriesTest, WithoutAnEntryThatIsAPathFromHomeOrRootTheyAreInTheHome) {
    EXPECT_EQ(XdgUserDirectories(home).documentsDirectory(), home + "/Documents");
    for (std::string_view text :
         {"XDG_DOCUMENTS_DIR=\"Documents2\"\n", "XDG_DOCUMENTS_DIR=\"$HOMEWORK/x\"\n",
          "XDG_DOCUMENTS_DIR=\"$HOME/unterminated\n", "# XDG_DOCUMENTS_DIR=\"/srv/commented\"\n",
          "XDG_DOCUMENTS_DIRECTORY=\"/srv/other\"\n"}) {
        EXPECT_EQ(documentsWith(text), home + "/Documents") << text;
    }
}

}  // namespace
}  // namespace marzipel
