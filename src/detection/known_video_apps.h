#pragma once

#include <array>
#include <string_view>

namespace marzipel {

/// Bundle identifiers of the video players offered on first run and treated differently in the
/// apps list, in their fixed order.
inline constexpr std::array<std::string_view, 7> kKnownVideoAppIds{
    "com.colliderli.iina",  "com.firecore.infuse",          "tv.jellyfin.player",
    "com.movist.MovistPro", "mo.darren.optimus.player.mac", "com.apple.QuickTimePlayerX",
    "org.videolan.vlc",
};

}  // namespace marzipel
