#include "detection/running_app_items.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_bundle_files.h"
#include "platform/sim/sim_workspace.h"

namespace marzipel {
namespace {

RunningApplication app(std::int32_t pid, std::optional<std::string> id,
                       std::optional<std::string> name, std::optional<std::string> bundle,
                       ActivationPolicy policy = ActivationPolicy::regular) {
    return {pid, std::move(id), std::move(name), std::move(bundle), policy};
}

TEST(RunningAppItemsTest, RegularAppsInWorkspaceOrderWithFallbacks) {
    SimBundleFiles files;
    files.addBundle("/Applications/IINA.app", {{"CFBundleIdentifier", "com.colliderli.iina"},
                                               {"CFBundleName", "IINA"},
                                               {"CFBundleIconFile", "AppIcon"}});
    SimWorkspace workspace;
    workspace.applications = {
        app(30, "com.colliderli.iina", "IINA (running)", "/Applications/IINA.app"),
        app(31, "com.example.agent", "Agent", std::nullopt, ActivationPolicy::accessory),
        app(32, "com.example.gone", "Gone", "/Applications/Gone.app"),
        app(33, std::nullopt, std::nullopt, std::nullopt),
        app(34, "com.example.daemon", "Daemon", std::nullopt, ActivationPolicy::prohibited),
        app(35, "com.colliderli.iina", "IINA (running)", "/Applications/IINA.app"),
    };
    BundleCatalog catalog(files);

    AppItem iina{"com.colliderli.iina", "IINA",
                 "/Applications/IINA.app/Contents/Resources/AppIcon.icns"};
    EXPECT_EQ(runningAppItems(workspace, catalog),
              (std::vector<AppItem>{iina,
                                    {"com.example.gone", "Gone", std::nullopt},
                                    {"", "Unknown App", std::nullopt},
                                    iina}));
}

}  // namespace
}  // namespace marzipel
