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

}  // namespace
}  // namespace marzipel
