#pragma once

#include <optional>
#include <string>

namespace marzipel {

/// The user's home folder: $HOME when set and not empty, else the password database entry.
std::optional<std::string> homeDirectory();

/// $XDG_CONFIG_HOME when it is an absolute path, else `home` + "/.config"; nothing when there is
/// neither.
std::optional<std::string> configHomeDirectory(const std::optional<std::string>& home);

/// $XDG_STATE_HOME when it is an absolute path, else `home` + "/.local/state"; nothing when there
/// is neither.
std::optional<std::string> stateHomeDirectory(const std::optional<std::string>& home);

}  // namespace marzipel
