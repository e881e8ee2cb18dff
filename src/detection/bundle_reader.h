#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/plist_value.h"
#include "platform/bundle_files.h"
#include "settings/app_item.h"

namespace marzipel {

/// The name given to an application that does not name itself.
inline constexpr std::string_view kUnknownAppName = "Unknown App";

/// The AppItem described by a bundle's Info.plist contents: nothing unless "CFBundleIdentifier"
/// is a string. `bundlePath` is the base of the icon path, used as given.
std::optional<AppItem> appItemFromInfoPlist(const std::string& bundlePath, const PlistValue& info);

/// The AppItem of the application bundle at `path`: nothing when the path is not a directory,
/// its "Contents/Info.plist" cannot be read, or it has no string identifier. The icon file's
/// existence is not checked.
std::optional<AppItem> appItemFromBundle(const std::string& path, const BundleFiles& files);

}  // namespace marzipel
