#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/sim/sim_platform.h"
#include "diagnostics/file_logger.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"

namespace marzipel {

struct CountingWelcomeWindow final : WelcomeWindowPresenter {
    void showWelcomeWindow() override { ++shown; }
    int shown = 0;
};

/// The whole core on the sim platform, with one list of what happened in order: brightness
/// calls, "state isActive V" at will-change time and "tray TEXT".
struct CoreWorld : testing::Test {
    TempFolder home;
    SimPlatform sim;
    SimUserDirectories& directories = sim.userDirectories;
    SimClock& clock = sim.clock;
    SimConsole& console = sim.console;
    SimSystemLog& systemLog = sim.systemLog;
    SimBrightnessWorld& brightness = sim.brightness;
    SimWorkspace& workspace = sim.workspace;
    SimPowerAssertions& assertions = sim.powerAssertions;
    SimSpaceMonitor& spaces = sim.spaceMonitor;
    NotificationCenter& center = sim.notificationCenter;
    SimApplication& application = sim.application;
    SimUpdater& updater = sim.updater;
    CountingWelcomeWindow welcome;
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), console};
    std::vector<std::string> events;
    std::unique_ptr<MarzipelApp> marzipel;
    Subscription stateTrace, trayTrace;

    CoreWorld() {
        directories.documents = home.path().string();
        brightness.onCall = [this](const std::string& call) { events.push_back(call); };
    }
    ~CoreWorld() override { FileLogger::setShared(nullptr); }

    /// Builds the application object on first use, so a test can shape the world before.
    MarzipelApp& app() {
        if (!marzipel) {
            marzipel = std::make_unique<MarzipelApp>(sim.platform(settings, welcome));
            stateTrace = marzipel->state().onWillChange([this](MarzipelState::Field, bool value) {
                events.push_back(std::string("state isActive ") + (value ? "true" : "false"));
            });
            trayTrace = marzipel->tray().onStatusChanged(
                [this](const std::string& text) { events.push_back("tray " + text); });
        }
        return *marzipel;
    }

    void startLogging() {
        settings.debugLoggingEnabled().set(true);
        FileLogger::setShared(FileLogger::create(directories, clock, console));
    }
    /// The debug log's lines without their timestamps.
    std::vector<std::string> logLines() const {
        std::vector<std::string> lines;
        std::istringstream text(readFile(home.file("Marzipel_debug.log")));
        const std::string stamp = clock.timestamp + ": ";
        for (std::string line; std::getline(text, line);)
            lines.push_back(line.substr(stamp.size()));
        return lines;
    }

    void runApp(std::int32_t pid, std::optional<std::string> id, std::optional<std::string> name) {
        RunningApplication application;
        application.processId = pid;
        application.bundleIdentifier = std::move(id);
        application.localizedName = std::move(name);
        workspace.applications.push_back(std::move(application));
    }
    void trigger(const std::string& id) { settings.addTriggerApp({id, id, std::nullopt}); }
    /// Makes `pid` frontmost and moves to a full-screen space.
    void fullScreen(std::int32_t pid) {
        app();
        workspace.frontmostProcessId = pid;
        spaces.switchSpace(true);
    }
    void regularSpace() {
        app();
        spaces.switchSpace(false);
    }
};

}  // namespace marzipel
