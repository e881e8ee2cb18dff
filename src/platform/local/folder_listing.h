#pragma once

#include <string>

#include "platform/bundle_files.h"

namespace marzipel {

/// The direct entries of `folder` on the real file system; a relative folder is taken from the
/// current directory. The error text names the folder and the system's reason.
FolderListing listFolderEntries(const std::string& folder);

}  // namespace marzipel
