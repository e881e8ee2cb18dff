#pragma once

#include <optional>
#include <string>

namespace marzipel {

/// Well-known folders of the current user.
class UserDirectories {
public:
    virtual ~UserDirectories() = default;
    /// Absolute path of the user's documents folder, or nothing when the platform has none.
    virtual std::optional<std::string> documentsDirectory() const = 0;
};

}  // namespace marzipel
