#include "platform/linux/xdg_user_directories.h"

#include <cstdlib>

namespace marzipel {

std::optional<std::string> XdgUserDirectories::documentsDirectory() const {
    const char* home = std::getenv("HOME");
    if (!home) return std::nullopt;
    return std::string(home) + "/Documents";
}

}  // namespace marzipel
