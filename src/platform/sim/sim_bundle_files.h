#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/bundle_files.h"

namespace marzipel {

/// Directories, property-list files and folder listings held in memory, as a test sets them.
/// Paths are compared as plain strings.
class SimBundleFiles final : public BundleFiles {
public:
    bool isDirectory(const std::string& path) const override;
    std::optional<PlistValue> readPropertyList(const std::string& path) const override;
    /// The entries set for `folder` in their given order; an error when it has none or when
    /// `folderErrors` names it.
    Result<std::vector<std::string>> listFolder(const std::string& folder) const override;

    /// Makes `path` a directory holding `info` as its "Contents/Info.plist".
    void addBundle(const std::string& path, PlistDictionary info);
    /// Adds `path` to the listing of `folder` (after the entries already there).
    void addEntry(const std::string& folder, const std::string& path);

    /// Paths that open as bundles (listed folders count too).
    std::set<std::string> directories;
    /// File path -> the property list read from it.
    std::map<std::string, PlistValue> propertyLists;
    /// Folder -> its entries as listed.
    std::map<std::string, std::vector<std::string>> folders;
    /// Folder -> the error its listing fails with.
    std::map<std::string, std::string> folderErrors;
    /// Every property-list path asked for, in order.
    mutable std::vector<std::string> reads;
};

}  // namespace marzipel
