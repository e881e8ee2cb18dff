// Arbitrary bytes as an installed desktop entry, an icon name and an id: ids come from the file
// name, names are UTF-8, icons exist. GLib's critical warnings (a caller's misuse) abort.
#include <glib.h>
#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/utf8.h"
#include "platform/linux/xdg/icon_theme_lookup.h"
#include "platform/linux/xdg/linux_desktop_entries.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

/// The data folder: the input becomes an entry in its applications folder, beside a few icons
/// for the lookup to find.
const marzipel::TempFolder share;

void checkIcon(const std::optional<std::string>& icon) {
    std::error_code error;
    if (icon && !fs::is_regular_file(*icon, error)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (const char* icon :
         {"icons/hicolor/scalable/apps/vlc.svg", "icons/hicolor/48x48/apps/mpv.png",
          "icons/hicolor/256x256/apps/mpv.png", "icons/hicolor/32x32@2/apps/kodi.png",
          "pixmaps/smplayer.xpm"})
        marzipel::writeFile(share / icon, "");
    setenv("LANGUAGE", "de_DE:fr", 1);
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string folder = share.path().string();
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string path = share / "applications/kde4/fuzz.desktop";
    marzipel::writeFile(path, input);

    marzipel::LinuxDesktopEntries entries({folder});
    if (std::optional<marzipel::DesktopEntry> entry = entries.readEntry(path)) {
        if (entry->id != "kde4-fuzz" || entry->path != path) std::abort();
        if (!marzipel::isValidUtf8(entry->name)) std::abort();
        if (entry->startupWmClass && !marzipel::isValidUtf8(*entry->startupWmClass)) std::abort();
        checkIcon(entry->iconPath);
        std::optional<marzipel::DesktopEntry> found = entries.findById("kde4-fuzz");
        if (!found || found->path != path) std::abort();
    }

    checkIcon(marzipel::IconThemeLookup({folder}).find(input));
    if (size < 200) {
        if (auto entry = entries.findById(input); entry && entry->path != path) std::abort();
    }
    return 0;
}
