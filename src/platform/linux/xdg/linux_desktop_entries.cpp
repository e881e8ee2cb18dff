#include "platform/linux/xdg/linux_desktop_entries.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

#include "platform/linux/xdg/icon_theme_lookup.h"
#include "platform/linux/xdg/key_file.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kGroup = "Desktop Entry";
constexpr std::string_view kSuffix = ".desktop";

std::string withoutTrailingSlashes(std::string folder) {
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
}

bool isDirectory(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// The desktop-file id of a file at `relative` below an applications folder.
std::string idFromRelativePath(const fs::path& relative) {
    std::string id = relative.generic_string();
    std::ranges::replace(id, '/', '-');
    if (id.ends_with(kSuffix)) id.resize(id.size() - kSuffix.size());
    return id;
}

/// `path` below `folder`, or nothing when it lies elsewhere.
std::optional<fs::path> relativeBelow(const fs::path& path, const fs::path& folder) {
    fs::path relative = path.lexically_relative(folder);
    if (relative.empty() || relative == "." || *relative.begin() == "..") return std::nullopt;
    return relative;
}

}  // namespace

std::vector<std::string> xdgDataFolders(const std::optional<std::string>& home) {
    std::vector<std::string> folders;
    auto add = [&folders](std::string_view candidate) {
        std::string folder = withoutTrailingSlashes(std::string(candidate));
        if (folder.empty() || folder.front() != '/') return;
        if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
    };
    std::optional<std::string> dataHome;
    if (const char* value = std::getenv("XDG_DATA_HOME"); value && value[0] == '/') {
        dataHome = withoutTrailingSlashes(value);
    } else if (home) {
        dataHome = withoutTrailingSlashes(*home) + "/.local/share";
    }
    if (dataHome) add(*dataHome);

    const char* dirs = std::getenv("XDG_DATA_DIRS");
    std::string_view list = dirs && *dirs ? dirs : "/usr/local/share:/usr/share";
    while (!list.empty()) {
        std::size_t colon = list.find(':');
        add(list.substr(0, colon));
        list = colon == std::string_view::npos ? std::string_view() : list.substr(colon + 1);
    }
    if (dataHome) add(*dataHome + "/flatpak/exports/share");
    add("/var/lib/flatpak/exports/share");
    add("/var/lib/snapd/desktop");
    return folders;
}

LinuxDesktopEntries::LinuxDesktopEntries(std::vector<std::string> dataFolders) {
    for (std::string& folder : dataFolders) {
        folder = withoutTrailingSlashes(std::move(folder));
        applicationFolders_.push_back(folder + "/applications");
        dataFolders_.push_back(std::move(folder));
    }
}

LinuxDesktopEntries::~LinuxDesktopEntries() {
    if (watch_ >= 0) close(watch_);
}

std::optional<DesktopEntry> LinuxDesktopEntries::readEntry(const std::string& path) const {
    return readEntry(path, IconThemeLookup(dataFolders_), std::nullopt);
}

std::optional<DesktopEntry> LinuxDesktopEntries::readEntry(
    const std::string& path, const IconThemeLookup& icons, std::optional<std::string> id,
    std::set<std::string>* iconFolders) const {
    KeyFile file;
    if (!file.loadFile(path, maxEntryBytes).ok() || !file.hasGroup(kGroup)) return std::nullopt;

    std::error_code error;
    const fs::path absolute = fs::absolute(path, error).lexically_normal();
    if (error) return std::nullopt;
    if (!id) {
        for (const std::string& folder : applicationFolders_) {
            if (auto relative = relativeBelow(absolute, folder)) {
                id = idFromRelativePath(*relative);
                break;
            }
        }
        if (!id) id = idFromRelativePath(absolute.filename());
    }
    if (id->empty()) return std::nullopt;

    DesktopEntry entry;
    entry.id = std::move(*id);
    entry.path = absolute.string();
    entry.name = file.localeString(kGroup, "Name").value_or("");
    if (auto icon = file.localeString(kGroup, "Icon")) {
        entry.iconPath = icons.find(*icon);
        if (iconFolders && icon->starts_with('/')) {
            iconFolders->insert(fs::path(*icon).lexically_normal().parent_path().string());
        }
    }
    entry.startupWmClass = file.string(kGroup, "StartupWMClass");
    entry.isApplication = file.string(kGroup, "Type") == "Application";
    entry.noDisplay = file.boolean(kGroup, "NoDisplay").value_or(false);
    entry.hidden = file.boolean(kGroup, "Hidden").value_or(false);
    return entry;
}

std::vector<std::string> LinuxDesktopEntries::applicationFolders() const {
    std::vector<std::string> existing;
    std::ranges::copy_if(applicationFolders_, std::back_inserter(existing), isDirectory);
    return existing;
}

LinuxDesktopEntries::FolderStamp LinuxDesktopEntries::stampOf(std::string path) {
    FolderStamp stamp;
    stamp.path = std::move(path);
    struct stat info {};
    if (::stat(stamp.path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return stamp;
    stamp.exists = true;
    stamp.device = info.st_dev;
    stamp.inode = info.st_ino;
    stamp.seconds = info.st_mtim.tv_sec;
    stamp.nanoseconds = info.st_mtim.tv_nsec;
    return stamp;
}

const LinuxDesktopEntries::Index& LinuxDesktopEntries::index() const {
    const auto same = [](const FolderStamp& s) { return stampOf(s.path) == s; };
    const bool unchanged = index_ && !index_->stale && !watchSawChange() &&
                           std::ranges::all_of(index_->unwatched, same);
    if (!unchanged) {
        index_ = readIndex();
        watch(*index_);
    }
    return *index_;
}

void LinuxDesktopEntries::watch(Index& index) const {
    if (watch_ >= 0) close(watch_);
    watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                       IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF |
                                       IN_MOVE_SELF | IN_ONLYDIR;
    for (const FolderStamp& stamp : index.folders) {
        const bool watched = watch_ >= 0 && stamp.exists &&
                             inotify_add_watch(watch_, stamp.path.c_str(), kChanges) >= 0;
        if (!watched) {
            index.unwatched.push_back(stamp);
        } else if (stampOf(stamp.path) != stamp) {
            // Changed after it was read and before the watch began, where the watch cannot see it.
            index.stale = true;
        }
    }
}

bool LinuxDesktopEntries::watchSawChange() const {
    if (watch_ < 0) return false;
    bool changed = false;
    alignas(inotify_event) std::array<char, 4096> events{};
    while (true) {
        const ssize_t length = read(watch_, events.data(), events.size());
        if (length > 0) {
            changed = true;
        } else if (length < 0 && errno == EINTR) {
            continue;
        } else {
            // EAGAIN is an empty queue; any other failure leaves the watch unable to tell.
            return changed || (length < 0 && errno != EAGAIN);
        }
    }
}

LinuxDesktopEntries::Index LinuxDesktopEntries::readIndex() const {
    // Every folder is stamped before it is read, so a change while reading shows on the next call.
    Index index;
    for (const std::string& dataFolder : dataFolders_) {
        const std::string theme = dataFolder + "/icons/hicolor";
        index.folders.push_back(stampOf(theme));
        std::error_code error;
        fs::directory_iterator it(theme, error);
        for (; !error && it != fs::directory_iterator(); it.increment(error)) {
            std::error_code ignored;
            if (!it->is_directory(ignored)) continue;
            index.folders.push_back(stampOf(it->path().string()));
            index.folders.push_back(stampOf(it->path().string() + "/apps"));
        }
        index.folders.push_back(stampOf(dataFolder + "/pixmaps"));
    }

    struct File {
        std::string id;
        std::string path;
        bool listed;
        auto operator<=>(const File&) const = default;
    };
    IconThemeLookup icons(dataFolders_);
    std::set<std::string> iconFolders;
    std::set<std::string, std::less<>> found;
    for (const std::string& folder : applicationFolders_) {
        std::vector<File> files;
        std::set<std::pair<std::uint64_t, std::uint64_t>> ancestors;
        // Symbolic links to subfolders are followed, as a lookup by id follows them, but what
        // lies below one is left out of the list of all entries.
        auto scan = [&](auto& self, const std::string& dir, const std::string& relative,
                        bool belowLink) -> void {
            const FolderStamp& stamp = index.folders.emplace_back(stampOf(dir));
            if (!stamp.exists || !ancestors.emplace(stamp.device, stamp.inode).second) return;
            const std::pair<std::uint64_t, std::uint64_t> key{stamp.device, stamp.inode};
            std::error_code error;
            fs::directory_iterator it(dir, fs::directory_options::skip_permission_denied, error);
            for (; !error && it != fs::directory_iterator(); it.increment(error)) {
                const std::string name = it->path().filename().string();
                const std::string path = dir + "/" + name;
                const std::string below = relative.empty() ? name : relative + "/" + name;
                std::error_code ignored;
                if (it->is_directory(ignored)) {
                    index.subfolders.insert(path);
                    self(self, path, below, belowLink || it->is_symlink(ignored));
                } else if (name.ends_with(kSuffix) && it->is_regular_file(ignored)) {
                    files.push_back({idFromRelativePath(below), path,
                                     !belowLink && name.size() > kSuffix.size()});
                }
            }
            ancestors.erase(key);
        };
        scan(scan, folder, "", false);

        std::ranges::sort(files);
        for (File& file : files) {
            std::optional<DesktopEntry> entry = readEntry(file.path, icons, file.id, &iconFolders);
            if (entry && file.listed && !found.contains(file.id)) {
                found.insert(file.id);
                index.all.push_back(*entry);
            }
            index.byPath.emplace(std::move(file.path), std::move(entry));
        }
    }
    for (const std::string& folder : iconFolders) index.folders.push_back(stampOf(folder));
    return index;
}

std::optional<DesktopEntry> LinuxDesktopEntries::findById(std::string_view id) const {
    if (id.empty() || id.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
        return std::nullopt;
    }
    const Index& current = index();
    for (const std::string& folder : applicationFolders_) {
        if (auto entry = findIn(current, folder, id, id)) return entry;
    }
    return std::nullopt;
}

std::optional<DesktopEntry> LinuxDesktopEntries::findIn(const Index& index,
                                                        const std::string& folder,
                                                        std::string_view rest,
                                                        std::string_view id) const {
    const std::string path = folder + "/" + std::string(rest) + std::string(kSuffix);
    if (auto found = index.byPath.find(path); found != index.byPath.end() && found->second) {
        DesktopEntry entry = *found->second;
        entry.id = std::string(id);
        return entry;
    }
    // "kde4-foo" may also be "kde4/foo.desktop": try every dash that follows a real subfolder.
    for (std::size_t dash = rest.find('-'); dash != std::string_view::npos;
         dash = rest.find('-', dash + 1)) {
        const std::string_view head = rest.substr(0, dash);
        if (head.empty() || head == "." || head == "..") continue;
        const std::string subfolder = folder + "/" + std::string(head);
        if (!index.subfolders.contains(subfolder)) continue;
        if (auto entry = findIn(index, subfolder, rest.substr(dash + 1), id)) return entry;
    }
    return std::nullopt;
}

std::vector<DesktopEntry> LinuxDesktopEntries::allEntries() const { return index().all; }

std::optional<DesktopEntry> LinuxDesktopEntries::findByStartupWmClass(
    std::string_view windowClass) const {
    for (const DesktopEntry& entry : index().all)
        if (entry.isApplication && !entry.hidden && entry.startupWmClass == windowClass)
            return entry;
    return std::nullopt;
}

}  // namespace marzipel
