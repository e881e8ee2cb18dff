#include "platform/linux/xdg/xdg_base_directories.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace marzipel {

std::optional<std::string> homeDirectory() {
    if (const char* home = std::getenv("HOME"); home && *home) return std::string(home);
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found ||
        !found->pw_dir || !*found->pw_dir) {
        return std::nullopt;
    }
    return std::string(found->pw_dir);
}

std::optional<std::string> configHomeDirectory(const std::optional<std::string>& home) {
    // Relative values are invalid by the XDG rules and are ignored.
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && config[0] == '/') {
        return std::string(config);
    }
    if (!home) return std::nullopt;
    return *home + "/.config";
}

std::optional<std::string> stateHomeDirectory(const std::optional<std::string>& home) {
    if (const char* state = std::getenv("XDG_STATE_HOME"); state && state[0] == '/') {
        return std::string(state);
    }
    if (!home) return std::nullopt;
    return *home + "/.local/state";
}

}  // namespace marzipel
