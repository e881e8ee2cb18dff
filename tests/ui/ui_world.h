#pragma once

#include <memory>
#include <string>

#include "app/sim/sim_platform.h"
#include "detection/app_catalog.h"
#include "diagnostics/file_logger.h"
#include "platform/sim/sim_bundle_files.h"
#include "platform/sim/sim_file_picker.h"
#include "platform/sim/sim_image_loader.h"
#include "platform/sim/sim_login_item_service.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"
#include "ui/ui_services.h"

namespace marzipel {

/// Settings, launch at login, bundles and every platform service the windows use, all in
/// memory, wired into the services the windows are built from.
struct UiWorld {
    SimPlatform sim;
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), sim.console};
    SimLoginItemService loginItems;
    LaunchAtLogin launchAtLogin{loginItems, sim.systemLog};
    SimBundleFiles bundleFiles;
    BundleCatalog catalog{bundleFiles};
    SimFilePicker filePicker;
    SimImageLoader imageLoader;

    UiWorld() { sim.userDirectories.documents = "/home/user/Documents"; }
    ~UiWorld() { FileLogger::setShared(nullptr); }

    UiServices services() {
        return UiServices{
            settings,  launchAtLogin, sim.application,      sim.workspace, sim.updater,
            catalog,   filePicker,    imageLoader,          sim.systemLog, sim.userDirectories,
            sim.clock, sim.console,   sim.brightnessFactory};
    }

    /// An application bundle at `path` with this identifier, name and icon file name.
    void addBundle(const std::string& path, const std::string& id, const std::string& name,
                   const std::string& iconFile = "") {
        PlistDictionary info{{"CFBundleIdentifier", PlistValue(id)},
                             {"CFBundleName", PlistValue(name)}};
        if (!iconFile.empty()) info.emplace("CFBundleIconFile", PlistValue(iconFile));
        bundleFiles.addBundle(path, std::move(info));
    }

    /// A running application, of the regular kind unless told otherwise.
    void runApp(std::int32_t pid, std::string id, std::string name,
                ActivationPolicy policy = ActivationPolicy::regular) {
        sim.workspace.applications.push_back({pid, id, name, std::nullopt, policy});
    }
};

}  // namespace marzipel
