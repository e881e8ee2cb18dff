#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
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
/// `findById` and `allEntries` share an index of every entry file below the applications folders,
/// read with its icon resolved. The index is read again when one of the folders it was read from
/// (the applications folders and their subfolders, the icon theme, pixmaps and absolute icon
/// folders) changed, appeared or went away. Folders that exist are watched with inotify, so that
/// an unchanged index costs one read of the watch per call, and a file edited in place is seen
/// too; the others, and all of them where inotify cannot watch, are compared by modification
/// time on every call. `readEntry` always reads the file.
class LinuxDesktopEntries final : public DesktopEntries {
public:
    /// Entry files larger than this are not read.
    static constexpr std::size_t maxEntryBytes = std::size_t{1} << 20;

    /// `dataFolders` in lookup order, the user's own first (see `xdgDataFolders`).
    explicit LinuxDesktopEntries(std::vector<std::string> dataFolders);
    ~LinuxDesktopEntries() override;
    LinuxDesktopEntries(const LinuxDesktopEntries&) = delete;
    LinuxDesktopEntries& operator=(const LinuxDesktopEntries&) = delete;

    /// An entry needs a "Desktop Entry" group. Its id comes from the path below the first
    /// applications folder that holds it, else from the file name alone.
    std::optional<DesktopEntry> readEntry(const std::string& path) const override;
    /// Only the applications folders that exist.
    std::vector<std::string> applicationFolders() const override;
    /// Subfolders are searched too; within one folder a file directly named by the id comes
    /// first. A file that cannot be read as an entry is passed over.
    std::optional<DesktopEntry> findById(std::string_view id) const override;
    /// Entries in subfolders included; within one folder ordered by id.
    std::vector<DesktopEntry> allEntries() const override;
    std::optional<DesktopEntry> findByStartupWmClass(std::string_view windowClass) const override;

private:
    /// A folder as `stat` saw it; two stamps differ when the folder changed, appeared, went
    /// away or was replaced.
    struct FolderStamp {
        std::string path;
        bool exists = false;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        bool operator==(const FolderStamp&) const = default;
    };

    struct Index {
        std::vector<FolderStamp> folders;
        /// The folders the watch does not cover, compared by time instead.
        std::vector<FolderStamp> unwatched;
        /// A folder changed between being read and being watched.
        bool stale = false;
        /// Every file named "*.desktop" below an applications folder, by its path as `findIn`
        /// builds it, with nothing when it is not an entry.
        std::map<std::string, std::optional<DesktopEntry>, std::less<>> byPath;
        /// Every subfolder below an applications folder, in the same form.
        std::set<std::string, std::less<>> subfolders;
        std::vector<DesktopEntry> all;
    };

    static FolderStamp stampOf(std::string path);
    const Index& index() const;
    Index readIndex() const;
    /// Starts a new watch on the folders of `index` that exist.
    void watch(Index& index) const;
    /// Whether the watch has seen a change since it started; empties its queue.
    bool watchSawChange() const;
    std::optional<DesktopEntry> readEntry(const std::string& path, const IconThemeLookup& icons,
                                          std::optional<std::string> id,
                                          std::set<std::string>* iconFolders = nullptr) const;
    std::optional<DesktopEntry> findIn(const Index& index, const std::string& folder,
                                       std::string_view rest, std::string_view id) const;

    std::vector<std::string> dataFolders_;
    std::vector<std::string> applicationFolders_;
    mutable std::optional<Index> index_;
    mutable int watch_ = -1;
};

}  // namespace marzipel
