#include "detection/running_app_items.h"

#include "detection/bundle_reader.h"

namespace marzipel {
namespace {

AppItem appItemForRunningApplication(const RunningApplication& application,
                                     const AppCatalog& catalog) {
    if (application.bundlePath) {
        if (std::optional<AppItem> item = catalog.appItem(*application.bundlePath)) return *item;
    }
    return AppItem{application.bundleIdentifier.value_or(""),
                   application.localizedName.value_or(std::string(kUnknownAppName)), std::nullopt};
}

}  // namespace

std::vector<AppItem> runningAppItems(const Workspace& workspace, const AppCatalog& catalog) {
    std::vector<AppItem> items;
    for (const RunningApplication& application : workspace.runningApplications()) {
        if (application.activationPolicy != ActivationPolicy::regular) continue;
        items.push_back(appItemForRunningApplication(application, catalog));
    }
    return items;
}

}  // namespace marzipel
