#pragma once

#include <vector>

#include "detection/app_catalog.h"
#include "platform/workspace.h"
#include "settings/app_item.h"

namespace marzipel {

/// One AppItem per regular running application, in the workspace's order, for choosing among.
/// Each is read from the application's bundle when it has a readable one, else made of its
/// bundle identifier ("" when absent) and localized name ("Unknown App" when absent) without an
/// icon. Duplicates are kept and the program's own process is not left out.
std::vector<AppItem> runningAppItems(const Workspace& workspace, const AppCatalog& catalog);

}  // namespace marzipel
