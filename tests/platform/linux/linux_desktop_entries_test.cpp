#include "platform/linux/linux_desktop_entries.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "detection/desktop_entry_catalog.h"
#include "detection/installed_video_apps.h"
#include "platform/linux/icon_theme_lookup.h"
#include "platform/local/local_bundle_files.h"
#include "platform/sim/sim_basics.h"
#include "support/scoped_env.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

std::string entryText(std::string_view name, std::string_view extra = "") {
    return "[Desktop Entry]\nType=Application\nName=" + std::string(name) + "\nExec=true\n" +
           std::string(extra);
}

class LinuxDesktopEntriesTest : public ::testing::Test {
protected:
    /// Writes `contents` at `relative` below `folder`, making the folders on the way.
    std::string put(const std::string& folder, std::string_view relative,
                    std::string_view contents = "") {
        const std::string path = (fs::path(folder) / relative).string();
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
    LinuxDesktopEntries entries{{user, system + "/"}};
    ScopedEnv language{"LANGUAGE", "de_DE"};
    ScopedEnv all{"LC_ALL", std::nullopt};
};

TEST_F(LinuxDesktopEntriesTest, ReadsTheFieldsOfAnEntry) {
    const std::string path = put(system, "applications/org.videolan.VLC.desktop",
                                 entryText("VLC media player",
                                           "Name[de]=VLC-Medienwiedergabe\nName[fr]=Lecteur\n"
                                           "StartupWMClass=vlc\n"));
    std::optional<DesktopEntry> entry = entries.readEntry(path);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "org.videolan.VLC");
    EXPECT_EQ(entry->path, path);
    EXPECT_EQ(entry->name, "VLC-Medienwiedergabe");
    EXPECT_EQ(entry->startupWmClass, "vlc");
    EXPECT_TRUE(entry->isApplication);
    EXPECT_FALSE(entry->noDisplay);
    EXPECT_FALSE(entry->hidden);

    language.set("es");
    EXPECT_EQ(entries.readEntry(path)->name, "VLC media player");

    entry = entries.readEntry(put(system, "applications/settings.desktop",
                                  "[Desktop Entry]\nType=Link\nName=\xff\xfe\nNoDisplay=true\n"
                                  "Hidden=true\n"));
    ASSERT_TRUE(entry);
    EXPECT_FALSE(entry->isApplication);
    EXPECT_TRUE(entry->noDisplay);
    EXPECT_TRUE(entry->hidden);
    EXPECT_EQ(entry->name, "");
    EXPECT_FALSE(entry->startupWmClass);
}

TEST_F(LinuxDesktopEntriesTest, FilesThatAreNotEntriesGiveNothing) {
    EXPECT_FALSE(entries.readEntry(system + "/applications/missing.desktop"));
    EXPECT_FALSE(entries.readEntry(
        put(system, "applications/other-group.desktop", "[Desktop Action new]\nName=New\n")));
    EXPECT_FALSE(entries.readEntry(
        put(system, "applications/broken.desktop", "[Desktop Entry\nName=Broken\n")));
    EXPECT_FALSE(entries.readEntry(
        put(system, "applications/binary.desktop", std::string("\177ELF\0\0\1", 7))));
    EXPECT_FALSE(entries.readEntry(put(system, "applications/.desktop", entryText("No id"))));
    EXPECT_FALSE(entries.readEntry(system + "/applications"));

    // A named pipe must not stall the reader.
    const std::string pipe = system + "/applications/pipe.desktop";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(entries.readEntry(pipe));
}

TEST_F(LinuxDesktopEntriesTest, IdsShadowingAndLaterChangesAsLookupsSeeThem) {
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
    EXPECT_EQ(all[1].name, "Own mpv");
    EXPECT_TRUE(all[1].hidden);
    EXPECT_EQ(all[3].name, "System VLC");

    EXPECT_EQ(entries.findById("kde4-games-patience")->name, "Patience");
    EXPECT_EQ(entries.findById("mpv")->name, "Own mpv");
    EXPECT_EQ(entries.findById("vlc")->path, system + "/applications/vlc.desktop");
    EXPECT_FALSE(entries.findById("totem"));
    EXPECT_FALSE(entries.findById("kde4-missing"));
    EXPECT_FALSE(entries.findById("..-applications-mpv"));
    EXPECT_FALSE(entries.findById("kde4/dragon"));
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
    std::optional<DesktopEntry> added = entries.findById("totem");
    ASSERT_TRUE(added);
    EXPECT_EQ(added->name, "Totem");

    put(system, "applications/kde4/cards/solitaire.desktop", entryText("Solitaire"));
    touchLater(system + "/applications/kde4");
    EXPECT_EQ(ids(entries.allEntries()),
              (std::vector<std::string>{"kde4-dragon", "mpv", "kde4-cards-solitaire",
                                        "kde4-games-patience", "totem", "vlc"}));

    // Rewriting a file in place leaves its folder's time alone.
    put(user, "applications/mpv.desktop", entryText("mpv Media Player"));
    EXPECT_EQ(entries.findById("mpv")->name, "mpv Media Player");
}

TEST_F(LinuxDesktopEntriesTest, ResolvesIconsThroughTheThemeFolders) {
    const IconThemeLookup icons({user, system});
    const auto iconOf = [&](std::string_view icon) { return icons.find(icon); };
    const std::string svg = put(system, "icons/hicolor/scalable/apps/vlc.svg");
    put(user, "icons/hicolor/512x512/apps/vlc.png");
    EXPECT_EQ(iconOf("vlc"), svg);

    put(user, "icons/hicolor/48x48/apps/mpv.png");
    put(user, "icons/hicolor/64x64/apps/other.png");
    const std::string largest = put(system, "icons/hicolor/256x256/apps/mpv.png");
    const std::string scaled = put(system, "icons/hicolor/128x128@2/apps/kodi.png");
    put(system, "icons/hicolor/192x192/apps/kodi.png");
    EXPECT_EQ(iconOf("mpv"), largest);
    EXPECT_EQ(iconOf("mpv.png"), largest);
    EXPECT_EQ(iconOf("kodi"), scaled);

    const std::string pixmap = put(system, "pixmaps/smplayer.xpm");
    EXPECT_EQ(iconOf("smplayer"), pixmap);
    EXPECT_EQ(iconOf("smplayer.xpm"), pixmap);

    const std::string absolute = put(temp.path(), "opt/player/icon.png");
    EXPECT_EQ(iconOf(absolute), absolute);
    EXPECT_EQ(iconOf(temp / "opt/player/missing.png"), std::nullopt);
    EXPECT_EQ(iconOf("missing"), std::nullopt);
    EXPECT_EQ(iconOf("../scalable/apps/vlc"), std::nullopt);
    EXPECT_EQ(iconOf(""), std::nullopt);
}

// Shadowing as the welcome window's search sees it, through the catalogue; also the icon of an
// entry.
TEST_F(LinuxDesktopEntriesTest, FindsInstalledPlayersEachOnceAsTheUserSeesThem) {
    const std::string flatpak = temp / "var/lib/flatpak/exports/share";
    put(user, "applications/mpv.desktop", entryText("mpv"));
    put(system, "applications/mpv.desktop", entryText("mpv Media Player"));
    const std::string celluloid = "applications/io.github.celluloid_player.Celluloid.desktop";
    put(user, celluloid, entryText("Celluloid", "NoDisplay=true\n"));
    put(system, celluloid, entryText("Celluloid"));
    put(system, "applications/org.gnome.TextEditor.desktop", entryText("Text Editor"));
    put(system, "applications/kodi.desktop", entryText("Kodi", "NoDisplay=true\n"));
    put(system, "applications/video/smplayer.desktop", entryText("SMPlayer"));
    put(flatpak, "applications/org.videolan.VLC.desktop",
        entryText("VLC", "Icon=org.videolan.VLC\n"));
    const std::string icon = put(flatpak, "icons/hicolor/128x128/apps/org.videolan.VLC.png");

    // A data folder without applications is not searched, so not reported as unreadable.
    LinuxDesktopEntries withFlatpak({user, temp / "opt/share", system, flatpak + "/"});
    LocalBundleFiles bundles;
    DesktopEntryCatalog catalog(withFlatpak, bundles);
    SimSystemLog log;
    EXPECT_EQ(
        findInstalledVideoApps(catalog, log),
        (std::vector<AppItem>{{"mpv", "mpv", std::nullopt}, {"org.videolan.VLC", "VLC", icon}}));
    EXPECT_TRUE(log.entries.empty());
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

    dataHome.set("relative");
    dataDirs.set("");
    EXPECT_EQ(
        xdgDataFolders(std::nullopt),
        (std::vector<std::string>{"/usr/local/share", "/usr/share",
                                  "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));
}

}  // namespace
}  // namespace marzipel
