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

namespace {

/// `variable` when it is an absolute path (relative values are invalid by the XDG rules and are
/// ignored), else `home` + `fallback`.
std::optional<std::string> baseDirectory(const char* variable,
                                         const std::optional<std::string>& home,
                                         const char* fallback) {
    if (const char* value = std::getenv(variable); value && value[0] == '/') return value;
    if (!home) return std::nullopt;
    return *home + fallback;
}

}  // namespace

std::optional<std::string> configHomeDirectory(const std::optional<std::string>& home) {
    return baseDirectory("XDG_CONFIG_HOME", home, "/.config");
}

std::optional<std::string> stateHomeDirectory(const std::optional<std::string>& home) {
    return baseDirectory("XDG_STATE_HOME", home, "/.local/state");
}

}  // namespace marzipel
