#include "platform/linux/xdg/xdg_autostart_login_item_service.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/utf8.h"
#include "platform/linux/files/atomic_file.h"
#include "platform/linux/xdg/key_file.h"

namespace marzipel {
namespace {

constexpr const char* kGroup = "Desktop Entry";
constexpr std::size_t kMaxEntryBytes = std::size_t{1} << 20;
constexpr const char* kNoFolder =
    "there is no configuration folder for the autostart entry: neither XDG_CONFIG_HOME nor a "
    "home folder is known";

/// `path` as one argument of an "Exec" line: quoted, with the characters that are special
/// inside quotes escaped and "%" doubled so that it is not read as a field code.
std::string execArgument(const std::string& path) {
    std::string quoted = "\"";
    for (char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') quoted += '\\';
        if (c == '%') quoted += '%';
        quoted += c;
    }
    return quoted + "\"";
}

}  // namespace

XdgAutostartLoginItemService::XdgAutostartLoginItemService(std::string executable,
                                                           std::optional<std::string> configHome)
    : executable_(std::move(executable)) {
    if (configHome) entryPath_ = *configHome + "/autostart/com.orsavelt.Marzipel.desktop";
}

LoginItemStatus XdgAutostartLoginItemService::status() const {
    if (!entryPath_) return LoginItemStatus::notRegistered;
    KeyFile file;
    if (!file.loadFile(*entryPath_, kMaxEntryBytes).ok() || !file.hasGroup(kGroup)) {
        return LoginItemStatus::notRegistered;
    }
    if (file.boolean(kGroup, "Hidden").value_or(false) ||
        !file.boolean(kGroup, "X-GNOME-Autostart-enabled").value_or(true)) {
        return LoginItemStatus::notRegistered;
    }
    return LoginItemStatus::enabled;
}

Status XdgAutostartLoginItemService::registerItem() {
    if (!entryPath_) return Status::failure(kNoFolder);
    if (!isValidUtf8(executable_)) {
        return Status::failure("the program's path is not valid UTF-8: " + executable_);
    }
    KeyFile file;
    file.setString(kGroup, "Type", "Application");
    file.setString(kGroup, "Name", "Marzipel");
    file.setString(kGroup, "Exec", execArgument(executable_));
    file.setString(kGroup, "Icon", "com.orsavelt.Marzipel");
    file.setBoolean(kGroup, "Terminal", false);
    file.setBoolean(kGroup, "X-GNOME-Autostart-enabled", true);
    return replaceFileAtomically(*entryPath_, file.toData());
}

Status XdgAutostartLoginItemService::unregisterItem() {
    if (!entryPath_) return Status();
    if (unlink(entryPath_->c_str()) != 0 && errno != ENOENT) {
        return Status::failure("cannot remove " + *entryPath_ + ": " + std::strerror(errno));
    }
    return Status();
}

}  // namespace marzipel
