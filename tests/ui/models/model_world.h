#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/sim/sim_platform.h"
#include "detection/app_catalog.h"
#include "diagnostics/file_logger.h"
#include "platform/sim/sim_bundle_files.h"
#include "platform/sim/sim_file_picker.h"
#include "platform/sim/sim_login_item_service.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"

namespace marzipel {

/// Settings, launch at login, bundles and the sim platform for the window models, with a real
/// Documents folder so that the debug log can be opened.
struct ModelWorld : testing::Test {
    TempFolder home;
    SimPlatform sim;
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), sim.console};
    SimLoginItemService loginItems;
    LaunchAtLogin launchAtLogin{loginItems, sim.systemLog};
    SimBundleFiles bundleFiles;
    BundleCatalog catalog{bundleFiles};
    SimFilePicker filePicker;

    ModelWorld() { sim.userDirectories.documents = home.path().string(); }
    ~ModelWorld() override { FileLogger::setShared(nullptr); }

    static bool caseInsensitiveLess(const std::string& a, const std::string& b) {
        auto lower = [](unsigned char c) { return std::tolower(c); };
        return std::ranges::lexicographical_compare(a, b, {}, lower, lower);
    }

    void addBundle(const std::string& path, const std::string& id, const std::string& name) {
        bundleFiles.addBundle(path, PlistDictionary{{"CFBundleIdentifier", PlistValue(id)},
                                                    {"CFBundleName", PlistValue(name)}});
    }
    void runApp(std::int32_t pid, std::optional<std::string> id, std::optional<std::string> name,
                ActivationPolicy policy = ActivationPolicy::regular) {
        RunningApplication application;
        application.processId = pid;
        application.bundleIdentifier = std::move(id);
        application.localizedName = std::move(name);
        application.activationPolicy = policy;
        sim.workspace.applications.push_back(std::move(application));
    }
};

}  // namespace marzipel
