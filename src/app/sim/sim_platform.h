#pragma once

#include "core/marzipel_app.h"
#include "platform/sim/sim_application.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_brightness_service.h"
#include "platform/sim/sim_space_monitor.h"
#include "platform/sim/sim_updater.h"
#include "platform/sim/sim_workspace.h"

namespace marzipel {

/// Every in-memory platform service the application object needs, wired to one notification
/// centre, in the state a new test world starts in.
struct SimPlatform {
    SimBrightnessWorld brightness;
    SimBrightnessServiceFactory brightnessFactory{brightness};
    SimWorkspace workspace;
    SimPowerAssertions powerAssertions;
    SimSpaceMonitor spaceMonitor;
    NotificationCenter notificationCenter;
    SimApplication application{notificationCenter};
    SimUpdater updater;
    SimSystemLog systemLog;
    SimConsole console;
    SimClock clock;
    SimUserDirectories userDirectories;
    SimRunMarker runMarker;

    /// The references the application object is built from; `clock` replaces the sim clock.
    MarzipelPlatform platform(const SettingsManager& settings, WelcomeWindowPresenter& welcome,
                              const Clock* clockOverride = nullptr) {
        return MarzipelPlatform{brightnessFactory, workspace,
                                powerAssertions,   spaceMonitor,
                                application,       updater,
                                systemLog,         clockOverride ? *clockOverride : clock,
                                console,           userDirectories,
                                settings,          notificationCenter,
                                welcome,           runMarker};
    }
};

}  // namespace marzipel
