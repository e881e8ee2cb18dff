#include <gtest/gtest.h>

#include "detection/desktop_entry_catalog.h"
#include "detection/installed_video_apps.h"
#include "platform/linux/linux_desktop_entries.h"
#include "platform/local/local_bundle_files.h"
#include "platform/sim/sim_basics.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

TEST(DesktopEntryDiscoveryTest, FindsInstalledPlayersAmongRealEntriesEachOnceAsTheUserSeesIt) {
    TempFolder temp;
    const std::string user = temp / "home/.local/share";
    const std::string system = temp / "usr/share";
    const std::string flatpak = temp / "var/lib/flatpak/exports/share";
    const auto put = [](const std::string& path, const std::string& name,
                        const std::string& extra = "") {
        writeFile(path, "[Desktop Entry]\nType=Application\nName=" + name + "\n" + extra);
    };
    put(user + "/applications/mpv.desktop", "mpv");
    // The user's own copies stand for the system's: one renamed, one hidden from menus.
    put(system + "/applications/mpv.desktop", "mpv Media Player");
    const std::string celluloid = "/applications/io.github.celluloid_player.Celluloid.desktop";
    put(user + celluloid, "Celluloid", "NoDisplay=true\n");
    put(system + celluloid, "Celluloid");
    put(system + "/applications/org.gnome.TextEditor.desktop", "Text Editor");
    put(system + "/applications/kodi.desktop", "Kodi", "NoDisplay=true\n");
    put(system + "/applications/video/smplayer.desktop", "SMPlayer");
    put(flatpak + "/applications/org.videolan.VLC.desktop", "VLC", "Icon=org.videolan.VLC\n");
    writeFile(flatpak + "/icons/hicolor/128x128/apps/org.videolan.VLC.png", "");

    // A data folder without applications is not searched, so not reported as unreadable.
    LinuxDesktopEntries entries({user, temp / "opt/share", system, flatpak});
    LocalBundleFiles bundles;
    DesktopEntryCatalog catalog(entries, bundles);
    SimSystemLog log;
    std::vector<AppItem> found = findInstalledVideoApps(catalog, log);

    EXPECT_EQ(found, (std::vector<AppItem>{
                         {"mpv", "mpv", std::nullopt},
                         {"org.videolan.VLC", "VLC",
                          flatpak + "/icons/hicolor/128x128/apps/org.videolan.VLC.png"},
                     }));
    EXPECT_TRUE(log.entries.empty());
}

}  // namespace
}  // namespace marzipel
