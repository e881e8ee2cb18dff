#pragma once

#include <optional>
#include <string>

#include "platform/user_directories.h"

namespace marzipel {

/// XDG_DOCUMENTS_DIR from the user's user-dirs.dirs, else ~/Documents.
class XdgUserDirectories final : public UserDirectories {
public:
    /// The current user's folders: $HOME and $XDG_CONFIG_HOME as they are now.
    XdgUserDirectories();
    /// The folders of a user whose home is `home`, with its configuration in `home`/.config.
    explicit XdgUserDirectories(std::string home);

    /// Reads user-dirs.dirs afresh on each call.
    std::optional<std::string> documentsDirectory() const override;

private:
    std::optional<std::string> home_;
    std::optional<std::string> configHome_;
};

}  // namespace marzipel
