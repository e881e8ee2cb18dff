#include "platform/linux/files/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

namespace marzipel {
namespace {

namespace fs = std::filesystem;

std::string describe(std::string_view step, const std::string& path, int error) {
    return std::string(step) + " " + path + ": " + std::strerror(error);
}

bool writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        ssize_t written = write(descriptor, contents.data(), contents.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Where the contents must go: the target of a symbolic link, else `path` itself.
fs::path destinationOf(const std::string& path) {
    std::error_code error;
    if (fs::is_symlink(path, error)) {
        fs::path target = fs::weakly_canonical(path, error);
        if (!error) return target;
    }
    return path;
}

/// The temporary name's start for `destination`; mkostemp adds six characters.
std::string temporaryPrefix(const fs::path& destination) {
    return "." + destination.filename().string() + ".";
}

constexpr std::size_t kTemporarySuffixLength = 6;

}  // namespace

Status replaceFileAtomically(const std::string& path, std::string_view contents) {
    const fs::path destination = destinationOf(path);
    const fs::path folder = destination.has_parent_path() ? destination.parent_path() : ".";
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        return Status::failure("cannot create folder " + folder.string() + ": " + error.message());
    }

    std::string temporary = (folder / (temporaryPrefix(destination) + "XXXXXX")).string();
    std::vector<char> name(temporary.begin(), temporary.end());
    name.push_back('\0');
    int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return Status::failure(describe("cannot create a temporary file in", folder, errno));
    }
    temporary = name.data();
    // Tells removeLeftoverTemporaries in another process that this file is in use. The lock
    // goes with the descriptor, also when the process is killed.
    flock(descriptor, LOCK_EX);

    std::string failure;
    if (!writeAll(descriptor, contents)) {
        failure = describe("cannot write", temporary, errno);
    } else if (fsync(descriptor) != 0) {
        failure = describe("cannot flush", temporary, errno);
    } else if (std::rename(temporary.c_str(), destination.c_str()) != 0) {
        failure = describe("cannot rename " + temporary + " to", destination, errno);
    }
    if (!failure.empty()) unlink(temporary.c_str());
    if (close(descriptor) != 0 && failure.empty()) {
        // Renamed already: the contents are in place, but the close may have lost them.
        failure = describe("cannot close", destination, errno);
    }
    if (!failure.empty()) return Status::failure(std::move(failure));
    // The new name must reach the disk too. Some file systems cannot flush a folder; the
    // contents are in place by now either way, so that is not reported.
    int folderDescriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderDescriptor >= 0) {
        fsync(folderDescriptor);
        close(folderDescriptor);
    }
    return Status();
}

int removeLeftoverTemporaries(const std::string& path) {
    const fs::path destination = destinationOf(path);
    const fs::path folder = destination.has_parent_path() ? destination.parent_path() : ".";
    const std::string prefix = temporaryPrefix(destination);
    int removed = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (name.size() != prefix.size() + kTemporarySuffixLength || !name.starts_with(prefix))
            continue;
        const int descriptor = open(entry.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (descriptor < 0) continue;
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && unlink(entry.path().c_str()) == 0)
            ++removed;
        close(descriptor);
    }
    return removed;
}

Result<std::string> moveAsideWithoutReplacing(const std::string& path,
                                              const std::string& destination) {
    constexpr int attempts = 1000;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::string candidate =
            attempt == 0 ? destination : destination + "-" + std::to_string(attempt);
        // RENAME_NOREPLACE: another process may create the name between a check and the move.
        if (renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, candidate.c_str(), RENAME_NOREPLACE) == 0) {
            return candidate;
        }
        if (errno == EEXIST) continue;
        if (errno != EINVAL && errno != ENOSYS) return Status::failure(std::strerror(errno));
        // A file system without RENAME_NOREPLACE: check first, then move.
        std::error_code ignored;
        if (std::filesystem::exists(candidate, ignored)) continue;
        if (std::rename(path.c_str(), candidate.c_str()) == 0) return candidate;
        return Status::failure(std::strerror(errno));
    }
    return Status::failure("every name up to " + destination + "-" + std::to_string(attempts - 1) +
                           " is taken");
}

}  // namespace marzipel
