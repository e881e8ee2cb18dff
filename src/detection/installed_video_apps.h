#pragma once

#include <string>
#include <vector>

#include "detection/app_catalog.h"
#include "platform/system_log.h"
#include "settings/app_item.h"

namespace marzipel {

/// The known video players installed directly in the catalogue's application folders, folder by
/// folder in listing order; an app found in two folders is listed twice, unless the catalogue's
/// listing leaves one out (desktop entries that an earlier folder overrides). A folder that
/// cannot be listed is reported to `systemLog` and skipped.
std::vector<AppItem> findInstalledVideoApps(const AppCatalog& catalog, SystemLog& systemLog);

/// The same search over `folders` instead of the catalogue's own.
std::vector<AppItem> findInstalledVideoApps(const AppCatalog& catalog, SystemLog& systemLog,
                                            const std::vector<std::string>& folders);

}  // namespace marzipel
