#pragma once

#include "platform/bundle_files.h"

namespace marzipel {

/// Bundles and folders on the real file system; property lists through libplist.
class LocalBundleFiles final : public BundleFiles {
public:
    bool isDirectory(const std::string& path) const override;
    std::optional<PlistValue> readPropertyList(const std::string& path) const override;
    /// A relative `folder` is taken from the current directory. The error text names the folder
    /// and the system's reason.
    Result<std::vector<std::string>> listFolder(const std::string& folder) const override;
};

}  // namespace marzipel
