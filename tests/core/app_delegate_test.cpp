#include "core/app_delegate.h"

#include <gtest/gtest.h>

#include "core/tray_model.h"
#include "core_world.h"

namespace marzipel {
namespace {

using Lines = std::vector<std::string>;
using AppDelegateTest = CoreWorld;

TEST_F(AppDelegateTest, FirstLaunchShowsTheWelcomeAndInstallsTheLoggerBeforeDetecting) {
    settings.debugLoggingEnabled().set(true);
    app();
    EXPECT_EQ(AppDelegate::shared(), &app().appDelegate());
    EXPECT_EQ(updater.starts, 1);
    EXPECT_TRUE(updater.gentleReminders);
    EXPECT_EQ(FileLogger::shared(), nullptr);

    application.finishLaunching();
    EXPECT_EQ(welcome.shown, 1);
    EXPECT_EQ(application.policy, std::nullopt);
    ASSERT_NE(FileLogger::shared(), nullptr);
    EXPECT_EQ(logLines(), (Lines{"Left full screen", "Doing nothing, was not active"}));
}

TEST_F(AppDelegateTest, SharedIsTheNewestDelegateWhileItLives) {
    auto make = [&] {
        return std::make_unique<AppDelegate>(application, updater, welcome, settings, directories,
                                             clock, console);
    };
    auto first = make();
    auto second = make();
    EXPECT_EQ(AppDelegate::shared(), second.get());
    first.reset();
    EXPECT_EQ(AppDelegate::shared(), second.get());
    second.reset();
    EXPECT_EQ(AppDelegate::shared(), nullptr);
}

}  // namespace
}  // namespace marzipel
