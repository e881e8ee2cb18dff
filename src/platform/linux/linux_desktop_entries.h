#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop_entries.h"

namespace marzipel {

class IconThemeLookup;

/// The XDG data folders in lookup order: $XDG_DATA_HOME (else `home` + "/.local/share"), the
/// folders of $XDG_DATA_DIRS (else "/usr/local/share" and "/usr/share"), then the user's and the
/// system's flatpak exports and snap's desktop folder, each only when not named already.
/// Relative folders are ignored, as the XDG rules require.
std::vector<std::string> xdgDataFolders(const std::optional<std::string>& home);

/// Desktop entries read with GLib from the "applications" and icon folders of given data folders.
/// Nothing is cached between calls.
class LinuxDesktopEntries final : public DesktopEntries {
public:
    /// Entry files larger than this are not read.
    static constexpr std::size_t maxEntryBytes = std::size_t{1} << 20;

    /// `dataFolders` in lookup order, the user's own first (see `xdgDataFolders`).
    explicit LinuxDesktopEntries(std::vector<std::string> dataFolders);

    /// An entry needs a "Desktop Entry" group. Its id comes from the path below the first
    /// applications folder that holds it, else from the file name alone.
    std::optional<DesktopEntry> readEntry(const std::string& path) const override;
    /// Only the applications folders that exist.
    std::vector<std::string> applicationFolders() const override;
    FolderListing listFolder(const std::string& folder) const override;
    /// Subfolders are searched too; within one folder a file directly named by the id comes
    /// first. A file that cannot be read as an entry is passed over.
    std::optional<DesktopEntry> findById(std::string_view id) const override;
    /// Entries in subfolders included; within one folder ordered by id.
    std::vector<DesktopEntry> allEntries() const override;

private:
    std::optional<DesktopEntry> readEntry(const std::string& path, const IconThemeLookup& icons,
                                          std::optional<std::string> id) const;
    std::optional<DesktopEntry> findIn(const std::string& folder, std::string_view rest,
                                       std::string_view id, const IconThemeLookup& icons) const;

    std::vector<std::string> dataFolders_;
    std::vector<std::string> applicationFolders_;
};

}  // namespace marzipel
