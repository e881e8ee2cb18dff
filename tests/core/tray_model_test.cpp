#include "core/tray_model.h"

#include <gtest/gtest.h>

#include "core/app_delegate.h"
#include "platform/sim/sim_application.h"
#include "platform/sim/sim_workspace.h"

namespace marzipel {
namespace {

TEST(TrayModelTest, StatusLineNamesTheAppFrontmostWhenTheStateLastChanged) {
    MarzipelState state;
    SimWorkspace workspace;
    NotificationCenter center;
    SimApplication application{center};
    TrayModel tray(state, workspace, application);
    std::vector<std::string> seen;
    auto listener = tray.onStatusChanged([&](const std::string& text) { seen.push_back(text); });
    workspace.applications.resize(2);
    workspace.applications[0].processId = 1;
    workspace.applications[0].localizedName = "Alpha";
    workspace.applications[1].processId = 2;
    workspace.frontmostProcessId = 1;
    EXPECT_EQ(tray.statusText(), "Waiting for triggers...");

    state.setIsActive(true);
    workspace.frontmostProcessId = 2;
    EXPECT_EQ(tray.statusText(), "Active for Alpha");
    state.setTriggerValue(!state.triggerValue());  // a refresh looks again: no name now
    workspace.frontmostProcessId.reset();
    state.setIsActive(true);
    state.setIsActive(false);
    EXPECT_EQ(seen, (std::vector<std::string>{"Active for Alpha", "Active on this screen",
                                              "Active on this screen", "Waiting for triggers..."}));
}

TEST(TrayModelTest, QuitWithoutADelegateStillAsksToTerminate) {
    MarzipelState state;
    SimWorkspace workspace;
    NotificationCenter center;
    SimApplication application{center};
    TrayModel tray(state, workspace, application);
    ASSERT_EQ(AppDelegate::shared(), nullptr);
    tray.about();
    tray.quit();
    EXPECT_EQ(application.calls, (std::vector<std::string>{"activate", "about", "terminate"}));
}

}  // namespace
}  // namespace marzipel
