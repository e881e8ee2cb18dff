#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "detection/app_catalog.h"
#include "platform/bundle_files.h"
#include "platform/desktop_entries.h"

namespace marzipel {

/// Applications described by freedesktop desktop entries, as on Linux, where an app's id is its
/// desktop-file id. Application bundles given by path are still read as `BundleCatalog` reads
/// them.
class DesktopEntryCatalog final : public AppCatalog {
public:
    /// `entries` and `bundleFiles` must outlive the catalogue.
    DesktopEntryCatalog(const DesktopEntries& entries, const BundleFiles& bundleFiles)
        : entries_(entries), bundles_(bundleFiles) {}

    /// A path ending in ".desktop" gives its entry when that is an application that is neither
    /// "NoDisplay" nor "Hidden", named "Unknown App" when it has no name; any other path is read
    /// as a bundle.
    std::optional<AppItem> appItem(const std::string& path) const override;
    std::vector<std::string> applicationFolders() const override;
    /// Ends in ".desktop", case-sensitively.
    bool isApplicationPath(std::string_view path) const override;
    /// Leaves out entries that an entry of the same id in an earlier folder overrides.
    Result<std::vector<std::string>> listFolder(const std::string& folder) const override;
    /// One of `kKnownLinuxVideoAppIds`.
    bool isKnownVideoApp(std::string_view id) const override;

private:
    const DesktopEntries& entries_;
    BundleCatalog bundles_;
};

}  // namespace marzipel
