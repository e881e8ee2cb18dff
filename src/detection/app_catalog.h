#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bundle_files.h"
#include "settings/app_item.h"

namespace marzipel {

/// Where installed applications are described on disk and how one description becomes an
/// AppItem. Discovery and the running-apps picker work through it, whatever kind of
/// description (application bundle or otherwise) a platform uses.
class AppCatalog {
public:
    virtual ~AppCatalog() = default;
    /// The application described at `path`, or nothing when it is not a readable description.
    virtual std::optional<AppItem> appItem(const std::string& path) const = 0;
    /// The folders that hold installed applications, in search order.
    virtual std::vector<std::string> applicationFolders() const = 0;
    /// Whether an entry found in such a folder names an application description.
    virtual bool isApplicationPath(std::string_view path) const = 0;
    /// The direct entries of `folder`, or why it could not be read.
    virtual Result<std::vector<std::string>> listFolder(const std::string& folder) const = 0;
    /// Whether `id` is one of the video players offered on first run and treated differently in
    /// the apps list (exact, case-sensitive).
    virtual bool isKnownVideoApp(std::string_view id) const = 0;
};

/// Application bundles (".app" folders with a "Contents/Info.plist"), found in "/Applications"
/// and "/System/Applications".
class BundleCatalog final : public AppCatalog {
public:
    /// `files` must outlive the catalogue.
    explicit BundleCatalog(const BundleFiles& files) : files_(files) {}

    std::optional<AppItem> appItem(const std::string& path) const override;
    std::vector<std::string> applicationFolders() const override;
    /// Ends in ".app", case-sensitively.
    bool isApplicationPath(std::string_view path) const override;
    Result<std::vector<std::string>> listFolder(const std::string& folder) const override;
    bool isKnownVideoApp(std::string_view id) const override;

private:
    const BundleFiles& files_;
};

}  // namespace marzipel
