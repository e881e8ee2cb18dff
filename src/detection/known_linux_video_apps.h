#pragma once

#include <array>
#include <string_view>

namespace marzipel {

/// Desktop-file ids of the video players offered on first run and treated differently in the
/// apps list on Linux: each player's distribution id and its flatpak id, where they differ.
inline constexpr auto kKnownLinuxVideoAppIds = std::to_array<std::string_view>({
    "vlc",
    "org.videolan.VLC",
    "vlc_vlc",  // snap
    "mpv",
    "io.mpv.Mpv",
    "org.gnome.Totem",
    "io.github.celluloid_player.Celluloid",
    "org.kde.haruna",
    "smplayer",
    "info.smplayer.SMPlayer",
    "kodi",
    "tv.kodi.Kodi",
    "com.github.iwalton3.jellyfin-media-player",
    "org.jellyfin.JellyfinDesktop",
    "org.gnome.Showtime",
    "org.kde.dragonplayer",
    "io.github.mpc_qt.mpc-qt",
    "io.github.mpc_qt.Mpc-Qt",  // older releases
    "mpc-qt",
});

}  // namespace marzipel
