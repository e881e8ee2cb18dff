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
    const auto put = writeFile;
    put(user + "/applications/mpv.desktop", "[Desktop Entry]\nType=Application\nName=mpv\n");
    // The user's own copies stand for the system's: one renamed, one hidden from menus.
    put(system + "/applications/mpv.desktop",
        "[Desktop Entry]\nType=Application\nName=mpv Media Player\n");
    const std::string celluloid = "/applications/io.github.celluloid_player.Celluloid.desktop";
    put(user + celluloid, "[Desktop Entry]\nType=Application\nName=Celluloid\nNoDisplay=true\n");
    put(system + celluloid, "[Desktop Entry]\nType=Application\nName=Celluloid\n");
    put(system + "/applications/org.gnome.TextEditor.desktop",
        "[Desktop Entry]\nType=Application\nName=Text Editor\n");
    put(system + "/applications/kodi.desktop",
        "[Desktop Entry]\nType=Application\nName=Kodi\nNoDisplay=true\n");
    put(system + "/applications/video/smplayer.desktop",
        "[Desktop Entry]\nType=Application\nName=SMPlayer\n");
    put(flatpak + "/applications/org.videolan.VLC.desktop",
        "[Desktop Entry]\nType=Application\nName=VLC\nIcon=org.videolan.VLC\n");
    put(flatpak + "/icons/hicolor/128x128/apps/org.videolan.VLC.png", "");

    LinuxDesktopEntries entries({user, system, flatpak});
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
