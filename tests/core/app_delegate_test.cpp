#include "core/app_delegate.h"

#include <gtest/gtest.h>

#include "app/sim/sim_platform.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct NoWelcomeWindow final : WelcomeWindowPresenter {
    void showWelcomeWindow() override {}
};

// What launching does is checked end to end by the launch scenario; this covers what it cannot
// see: the updater's start and which delegate answers as the shared one.
TEST(AppDelegateTest, StartsTheUpdaterAndTheNewestLivingDelegateIsShared) {
    SimPlatform sim;
    NoWelcomeWindow welcome;
    SettingsManager settings(std::make_shared<SimPreferencesStore>(), sim.console);
    auto make = [&] {
        return std::make_unique<AppDelegate>(sim.application, sim.updater, welcome, settings,
                                             sim.userDirectories, sim.clock, sim.console);
    };
    auto first = make();
    EXPECT_EQ(sim.updater.starts, 1);
    EXPECT_TRUE(sim.updater.gentleReminders);
    auto second = make();
    EXPECT_EQ(AppDelegate::shared(), second.get());
    first.reset();
    EXPECT_EQ(AppDelegate::shared(), second.get());
    second.reset();
    EXPECT_EQ(AppDelegate::shared(), nullptr);
}

}  // namespace
}  // namespace marzipel
