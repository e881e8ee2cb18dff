#pragma once

#include "platform/user_directories.h"

namespace marzipel {

/// The folders NSFileManager names for the current user.
class MacUserDirectories final : public UserDirectories {
public:
    std::optional<std::string> documentsDirectory() const override;
};

}  // namespace marzipel
