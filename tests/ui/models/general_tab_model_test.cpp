#include "ui/models/general_tab_model.h"

#include <gtest/gtest.h>

#include "ui/models/model_world.h"

namespace marzipel {
namespace {

struct GeneralTabModelTest : ModelWorld {
    std::unique_ptr<GeneralTabModel> tab;

    /// Built on first use, so that a test can set the updater up before.
    GeneralTabModel& model() {
        if (!tab) {
            tab = std::make_unique<GeneralTabModel>(
                GeneralTabModel::Services{settings, launchAtLogin, sim.updater, sim.workspace,
                                          sim.userDirectories, sim.clock, sim.console});
        }
        return *tab;
    }
};

TEST_F(GeneralTabModelTest, FeatureSwitchesStoreTheWholeSetAtOnce) {
    model().setFeatureEnabled(Feature::nightShift, false);
    EXPECT_EQ(settings.enabledFeatures().get(), std::set<Feature>{Feature::keyboardBacklight});
    model().setFeatureEnabled(Feature::keyboardBacklight, false);
    model().setFeatureEnabled(Feature::nightShift, true);
    EXPECT_EQ(settings.enabledFeatures().get(), std::set<Feature>{Feature::nightShift});
    EXPECT_FALSE(model().isFeatureEnabled(Feature::keyboardBacklight));
    EXPECT_TRUE(model().isFeatureEnabled(Feature::nightShift));
}

TEST_F(GeneralTabModelTest, ChangesMadeElsewhereAreAnnouncedWithTheNewValueReadable) {
    std::vector<bool> nightShiftSeen;
    auto changed = model().onChanged(
        [&] { nightShiftSeen.push_back(model().isFeatureEnabled(Feature::nightShift)); });
    settings.setFeatureEnabled(Feature::nightShift, false);
    settings.debugLoggingEnabled().set(true);
    launchAtLogin.setEnabled(true);
    EXPECT_EQ(nightShiftSeen, (std::vector<bool>{false, false, false}));
}

TEST_F(GeneralTabModelTest, DebugLoggingSwitchMakesTheSharedLoggerAndKeepsIt) {
    const std::string path = home / "Marzipel_debug.log";
    EXPECT_EQ(model().logsLineText(), "Logs will be saved to " + path);
    model().debugLogging().setOn(false);
    EXPECT_EQ(FileLogger::shared(), nullptr);

    model().debugLogging().setOn(true);
    EXPECT_TRUE(settings.debugLoggingEnabled().get());
    EXPECT_EQ(model().logsLineText(), "Logs are being saved to " + path);
    FileLogger* logger = FileLogger::shared();
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(logger->logFilePath(), path);

    model().debugLogging().setOn(false);
    EXPECT_EQ(FileLogger::shared(), logger);
    EXPECT_EQ(model().logsLineText(), "Logs will be saved to " + path);

    model().openLogsFolder();
    EXPECT_EQ(sim.workspace.openedFolders, std::vector<std::string>{home.path().string()});
}

TEST_F(GeneralTabModelTest, UpdaterRowStartsFromTheUpdaterAndWritesBack) {
    sim.updater.automaticChecks = false;
    EXPECT_FALSE(model().automaticallyChecksForUpdates());
    model().setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(sim.updater.automaticChecks);

    model().checkForUpdatesNow();
    EXPECT_EQ(sim.updater.checks, 1);
}

}  // namespace
}  // namespace marzipel
