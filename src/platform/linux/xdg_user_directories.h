#pragma once

#include "platform/user_directories.h"

namespace marzipel {

/// XDG_DOCUMENTS_DIR from the user's user-dirs.dirs, else ~/Documents.
class XdgUserDirectories final : public UserDirectories {
public:
    std::optional<std::string> documentsDirectory() const override;
};

}  // namespace marzipel
