#pragma once

#include <optional>
#include <string>

#include "platform/login_item_service.h"

namespace marzipel {

/// The program's own XDG autostart entry, "autostart/com.orsavelt.Marzipel.desktop" in the
/// user's configuration folder. Every call reads or changes the file itself.
class XdgAutostartLoginItemService final : public LoginItemService {
public:
    /// `executable` is the absolute path the entry starts; `configHome` the user's configuration
    /// folder (see `configHomeDirectory`); without one there is no entry and registering fails.
    XdgAutostartLoginItemService(std::string executable, std::optional<std::string> configHome);

    /// `enabled` when the entry exists, reads as a desktop entry and is neither "Hidden" nor
    /// turned off by "X-GNOME-Autostart-enabled"; else `notRegistered`.
    LoginItemStatus status() const override;
    /// Writes the entry atomically, replacing any that is there.
    Status registerItem() override;
    /// Removes the entry; one that is already gone counts as removed.
    Status unregisterItem() override;

private:
    std::string executable_;
    std::optional<std::string> entryPath_;
};

}  // namespace marzipel
