#include "ui/models/general_tab_model.h"

#include <filesystem>

#include "diagnostics/debug_log.h"
#include "diagnostics/file_logger.h"
#include "ui/models/blue_light_label.h"

namespace marzipel {

GeneralTabModel::GeneralTabModel(const Services& services)
    : settings_(services.settings),
      updater_(services.updater),
      workspace_(services.workspace),
      userDirectories_(services.userDirectories),
      blueLightToggleLabel_(
          marzipel::blueLightToggleLabel(services.brightness.blueLightFilterName())),
      launchAtLogin_("Launch Marzipel at login", services.launchAtLogin),
      enabledFeatures_(services.settings.enabledFeatures()),
      debugLogging_("Enable debug logging", services.settings.debugLoggingEnabled(),
                    [&directories = services.userDirectories, &clock = services.clock,
                     &console = services.console](bool on) {
                        debugLoggingToggled(on, directories, clock, console);
                    }),
      automaticallyChecksForUpdates_(services.updater.isAvailable() &&
                                     services.updater.automaticallyChecksForUpdates()) {
    // Launch at login announces before it writes: views re-read on the next turn of the
    // event loop, by which time the service has the new state.
    featuresChanged_ = enabledFeatures_.onWillChange([this] { changed_.emit(); });
    debugLoggingChanged_ = debugLogging_.observable().onWillChange([this] { changed_.emit(); });
    launchAtLoginChanged_ = services.launchAtLogin.onWillChange([this] { changed_.emit(); });
}

bool GeneralTabModel::isFeatureEnabled(Feature feature) const {
    return enabledFeatures_.value().contains(feature);
}

void GeneralTabModel::setFeatureEnabled(Feature feature, bool on) {
    settings_.setFeatureEnabled(feature, on);
}

void GeneralTabModel::setAutomaticallyChecksForUpdates(bool on) {
    automaticallyChecksForUpdates_ = on;
    updater_.setAutomaticallyChecksForUpdates(on);
    changed_.emit();
}

std::string GeneralTabModel::logsLineText() const {
    const char* lead = debugLogging_.isOn() ? "Logs are being saved to " : "Logs will be saved to ";
    return lead + debugLogFilePath(userDirectories_);
}

void GeneralTabModel::openLogsFolder() {
    workspace_.openFolder(
        std::filesystem::path(debugLogFilePath(userDirectories_)).parent_path().string());
}

}  // namespace marzipel
