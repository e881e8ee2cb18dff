#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/plist_value.h"
#include "base/status.h"

namespace marzipel {

/// The file-system facts needed to read application bundles and find them in folders.
/// Any thread; nothing is cached between calls.
class BundleFiles {
public:
    /// Property-list files larger than this are not read.
    static constexpr std::size_t maxPropertyListBytes = std::size_t{8} << 20;

    virtual ~BundleFiles() = default;
    /// Whether `path` names an existing directory (symbolic links followed), i.e. opens as a
    /// bundle.
    virtual bool isDirectory(const std::string& path) const = 0;
    /// The property list (XML or binary) in the file at `path`; nothing when the file is missing,
    /// unreadable, larger than `maxPropertyListBytes` or not a property list.
    virtual std::optional<PlistValue> readPropertyList(const std::string& path) const = 0;
    /// The absolute paths of the direct entries of `folder`, hidden ones included, in the order
    /// the file system gave them, without descending into subfolders. A failure says why the
    /// folder could not be read.
    virtual Result<std::vector<std::string>> listFolder(const std::string& folder) const = 0;
};

}  // namespace marzipel
