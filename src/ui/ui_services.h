#pragma once

#include "detection/app_catalog.h"
#include "platform/application.h"
#include "platform/brightness_service.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/file_picker.h"
#include "platform/image_loader.h"
#include "platform/system_log.h"
#include "platform/updater.h"
#include "platform/user_directories.h"
#include "platform/workspace.h"
#include "settings/launch_at_login.h"
#include "settings/settings_manager.h"

namespace marzipel {

/// Everything the windows reach the settings and the platform through. All must outlive every
/// window built from it.
struct UiServices {
    const SettingsManager& settings;
    LaunchAtLogin& launchAtLogin;
    Application& application;
    Workspace& workspace;
    Updater& updater;
    const AppCatalog& catalog;
    FilePicker& filePicker;
    const ImageLoader& imageLoader;
    SystemLog& systemLog;
    const UserDirectories& userDirectories;
    const Clock& clock;
    Console& console;
    BrightnessServiceFactory& brightness;
};

}  // namespace marzipel
