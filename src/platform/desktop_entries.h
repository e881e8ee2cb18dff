#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bundle_files.h"

namespace marzipel {

/// One freedesktop desktop entry, as read from its file.
struct DesktopEntry {
    /// The desktop-file id without ".desktop" ("mpv", "org.videolan.VLC"); an entry in a
    /// subfolder of an applications folder has the subfolder joined with "-".
    std::string id;
    /// Absolute path of the file.
    std::string path;
    /// "Name", localised for the user's language.
    std::string name;
    /// "Icon" resolved to an image file through the icon theme folders, when it can be.
    std::optional<std::string> iconPath;
    std::optional<std::string> startupWmClass;
    /// "Type" is "Application".
    bool isApplication = false;
    bool noDisplay = false;
    bool hidden = false;
};

/// The desktop entries installed for the user, read from the XDG data folders (flatpak and snap
/// exports included). Main thread. An implementation may keep what it read between calls, as long
/// as each call answers for the files as they are then; `readEntry` always reads the file.
class DesktopEntries {
public:
    virtual ~DesktopEntries() = default;
    /// The entry in the file at `path`, or nothing when it is missing, unreadable or not a
    /// desktop entry.
    virtual std::optional<DesktopEntry> readEntry(const std::string& path) const = 0;
    /// The folders that hold application entries, the user's own first.
    virtual std::vector<std::string> applicationFolders() const = 0;
    /// The installed entry with this id, the first in folder order.
    virtual std::optional<DesktopEntry> findById(std::string_view id) const = 0;
    /// Every installed entry, in folder order; an id found again in a later folder is left out.
    virtual std::vector<DesktopEntry> allEntries() const = 0;
    /// The first application entry, in the order of `allEntries`, that is not hidden and whose
    /// "StartupWMClass" is `windowClass`.
    virtual std::optional<DesktopEntry> findByStartupWmClass(
        std::string_view windowClass) const = 0;
};

}  // namespace marzipel
