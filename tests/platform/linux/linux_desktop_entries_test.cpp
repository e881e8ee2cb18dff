#include "platform/linux/xdg/linux_desktop_entries.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "detection/desktop_entry_catalog.h"
#include "detection/installed_video_apps.h"
#include "platform/linux/xdg/icon_theme_lookup.h"
#include "platform/local/local_bundle_files.h"
#include "platform/sim/sim_basics.h"
#include "support/scoped_env.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

std::string entryText(std::string_view name, std::string_view extra = "") {
    return "[Desktop Entry]\nType=Application\nName=" + std::string(name) + "\nExec=true\n" +
           std::string(extra);
}

class LinuxDesktopEntriesTest : public ::testing::Test {
protected:
    /// Writes `contents` at `relative` below `folder`, making the folders on the way.
    std::string put(const std::string& folder, std::string_view relative,
                    std::string_view contents = "") {
        const std::string path = folder + "/" + std::string(relative);
        writeFile(path, contents);
        return path;
    }

    std::vector<std::string> ids(const std::vector<DesktopEntry>& entries) {
        std::vector<std::string> result;
        for (const DesktopEntry& entry : entries) result.push_back(entry.id);
        return result;
    }

    TempFolder temp;
    std::string user = temp / "home/.local/share";
    std::string system = temp / "usr/share";
    std::string flatpak = temp / "var/lib/flatpak/exports/share";
    // A data folder without applications is not searched, so not reported as unreadable.
    LinuxDesktopEntries entries{{user, temp / "opt/share", system + "/", flatpak + "/"}};
    ScopedEnv language{"LANGUAGE", "de_DE"};
    ScopedEnv all{"LC_ALL", std::nullopt};
};

TEST_F(LinuxDesktopEntriesTest, ReadsTheFieldsOfAnEntryOrNothing) {
    const std::string path = put(system, "applications/org.videolan.VLC.desktop",
                                 entryText("VLC media player",
                                           "Name[de]=VLC-Medienwiedergabe\nName[fr]=Lecteur\n"
                                           "StartupWMClass=vlc\n"));
    std::optional<DesktopEntry> entry = entries.readEntry(path);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "org.videolan.VLC");
    EXPECT_EQ(entry->name, "VLC-Medienwiedergabe");
    EXPECT_EQ(entry->startupWmClass, "vlc");
    EXPECT_TRUE(entry->isApplication && !entry->noDisplay && !entry->hidden);
    language.set("es");
    EXPECT_EQ(entries.readEntry(path)->name, "VLC media player");

    entry = entries.readEntry(put(system, "applications/settings.desktop",
                                  "[Desktop Entry]\nType=Link\nName=\xff\xfe\nNoDisplay=true\n"));
    ASSERT_TRUE(entry);
    EXPECT_TRUE(!entry->isApplication && entry->noDisplay && !entry->startupWmClass);
    EXPECT_EQ(entry->name, "") << "a name that is not UTF-8";

    put(system, "applications/other-group.desktop", "[Desktop Action new]\nName=New\n");
    put(system, "applications/broken.desktop", "[Desktop Entry\nName=Broken\n");
    // A named pipe must not stall the reader.
    ASSERT_EQ(mkfifo((system + "/applications/pipe.desktop").c_str(), 0600), 0);
    for (const char* name :
         {"missing.desktop", "other-group.desktop", "broken.desktop", "pipe.desktop", ""})
        EXPECT_FALSE(entries.readEntry(system + "/applications/" + name)) << name;
}

TEST_F(LinuxDesktopEntriesTest, IdsShadowingAndLaterChangesAsLookupsAndTheSearchSeeThem) {
    put(user, "applications/kde4/dragon.desktop", entryText("Dragon"));
    put(system, "applications/kde4/games/patience.desktop", entryText("Patience"));
    put(system, "applications/mpv.desktop", entryText("System mpv"));
    put(system, "applications/vlc.desktop", entryText("System VLC"));
    put(user, "applications/mpv.desktop", entryText("Own mpv", "Hidden=true\n"));
    put(user, "applications/vlc.desktop", "not an entry");
    const std::string elsewhere = put(temp.path(), "Downloads/Player.desktop", entryText("P"));

    EXPECT_EQ(entries.readEntry(user + "/applications/kde4/dragon.desktop")->id, "kde4-dragon");
    EXPECT_EQ(entries.readEntry(elsewhere)->id, "Player");
    // The user's folder first, each folder in the order of the ids.
    std::vector<DesktopEntry> all = entries.allEntries();
    ASSERT_EQ(ids(all),
              (std::vector<std::string>{"kde4-dragon", "mpv", "kde4-games-patience", "vlc"}));
    EXPECT_TRUE(all[1].hidden);
    EXPECT_EQ(all[3].name, "System VLC");

    EXPECT_EQ(entries.findById("kde4-games-patience")->name, "Patience");
    EXPECT_EQ(entries.findById("mpv")->name, "Own mpv");
    EXPECT_FALSE(entries.findById("totem"));
    EXPECT_FALSE(entries.findById("..-applications-mpv"));
    EXPECT_FALSE(entries.findById(std::string_view("kde4-dragon.desktop\0", 20)));

    // A folder's time may not move within the clock's tick, so it is set ahead explicitly.
    auto touchLater = [](const std::string& folder) {
        struct stat info {};
        ASSERT_EQ(stat(folder.c_str(), &info), 0);
        timespec times[2] = {info.st_atim, info.st_mtim};
        times[1].tv_sec += 10;
        ASSERT_EQ(utimensat(AT_FDCWD, folder.c_str(), times, 0), 0);
    };
    put(system, "applications/totem.desktop", entryText("Totem"));
    touchLater(system + "/applications");
    EXPECT_EQ(entries.findById("totem").value_or(DesktopEntry{}).name, "Totem");

    put(system, "applications/kde4/cards/solitaire.desktop", entryText("Solitaire"));
    touchLater(system + "/applications/kde4");
    EXPECT_EQ(ids(entries.allEntries()),
              (std::vector<std::string>{"kde4-dragon", "mpv", "kde4-cards-solitaire",
                                        "kde4-games-patience", "totem", "vlc"}));

    // Rewriting a file in place leaves its folder's time alone.
    put(user, "applications/mpv.desktop", entryText("mpv Media Player"));
    EXPECT_EQ(entries.findById("mpv")->name, "mpv Media Player");

    // The welcome window's search: each player once, as the lookups see it, with its icon.
    put(flatpak, "applications/org.videolan.VLC.desktop",
        entryText("VLC", "Icon=org.videolan.VLC\n"));
    const std::string icon = put(flatpak, "icons/hicolor/128x128/apps/org.videolan.VLC.png");
    LocalBundleFiles bundles;
    DesktopEntryCatalog catalog(entries, bundles);
    SimSystemLog log;
    EXPECT_EQ(findInstalledVideoApps(catalog, log),
              (std::vector<AppItem>{{"mpv", "mpv Media Player", std::nullopt},
                                    {"vlc", "System VLC", std::nullopt},
                                    {"org.videolan.VLC", "VLC", icon}}));
    EXPECT_TRUE(log.entries.empty());
}

TEST_F(LinuxDesktopEntriesTest, ResolvesIconsThroughTheThemeFolders) {
    const std::string vlc = put(system, "icons/hicolor/scalable/apps/vlc.svg");
    put(user, "icons/hicolor/512x512/apps/vlc.png");
    put(user, "icons/hicolor/48x48/apps/mpv.png");
    const std::string mpv = put(system, "icons/hicolor/256x256/apps/mpv.png");
    const std::string kodi = put(system, "icons/hicolor/128x128@2/apps/kodi.png");
    put(system, "icons/hicolor/192x192/apps/kodi.png");
    const std::string smplayer = put(system, "pixmaps/smplayer.xpm");
    const std::string absolute = put(temp.path(), "opt/player/icon.png");
    const IconThemeLookup icons({user, system});
    EXPECT_EQ(icons.find("vlc"), vlc);
    EXPECT_EQ(icons.find("kodi"), kodi);
    EXPECT_EQ(icons.find(absolute), absolute);
    for (const char* name : {"mpv", "mpv.png"}) EXPECT_EQ(icons.find(name), mpv) << name;
    for (const char* name : {"smplayer", "smplayer.xpm"}) EXPECT_EQ(icons.find(name), smplayer);
    for (const std::string& name : {temp / "opt/player/missing.png", std::string("missing"),
                                    std::string("../scalable/apps/vlc"), std::string()})
        EXPECT_EQ(icons.find(name), std::nullopt) << name;
}

TEST(XdgDataFoldersTest, FollowsTheEnvironmentAndAddsTheSandboxExports) {
    ScopedEnv dataHome("XDG_DATA_HOME", std::nullopt);
    ScopedEnv dataDirs("XDG_DATA_DIRS", std::nullopt);
    EXPECT_EQ(
        xdgDataFolders("/home/ann"),
        (std::vector<std::string>{"/home/ann/.local/share", "/usr/local/share", "/usr/share",
                                  "/home/ann/.local/share/flatpak/exports/share",
                                  "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));

    dataHome.set("/data/ann/");
    dataDirs.set("/var/lib/flatpak/exports/share/:relative/share::/usr/share:/usr/share/");
    EXPECT_EQ(
        xdgDataFolders(std::nullopt),
        (std::vector<std::string>{"/data/ann", "/var/lib/flatpak/exports/share", "/usr/share",
                                  "/data/ann/flatpak/exports/share", "/var/lib/snapd/desktop"}));
}

}  // namespace
}  // namespace marzipel
