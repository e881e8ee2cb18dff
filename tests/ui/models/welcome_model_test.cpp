#include "ui/models/welcome_model.h"

#include <gtest/gtest.h>

#include "ui/models/model_world.h"

namespace marzipel {
namespace {

struct WelcomeModelTest : ModelWorld {
    const AppItem iina{"com.colliderli.iina", "IINA", std::nullopt};
    const AppItem vlc{"org.videolan.vlc", "VLC", std::nullopt};
    WelcomeModel welcome{settings, launchAtLogin, sim.application, {iina, vlc}};
    int closeRequests = 0;
    Subscription closing = welcome.onCloseRequested([this] { ++closeRequests; });

    WelcomeModelTest() { settings.addTriggerApp({"io.mpv", "mpv", std::nullopt}); }
};

TEST_F(WelcomeModelTest, HeadingsFollowWhetherAnyPlayerWasFound) {
    EXPECT_EQ(welcome.detectedAppsHeading(), "We have detected a few compatible apps for you");
    EXPECT_EQ(welcome.featuresHeading(), "When one of the above apps goes fullscreen, I want to:");
    WelcomeModel none(settings, launchAtLogin, sim.application, {});
    EXPECT_EQ(none.detectedAppsHeading(),
              "Unfortunately, we found no known video apps on your device.");
    EXPECT_EQ(none.featuresHeading(),
              "When one of the apps I will select goes fullscreen, I want to");
}

TEST_F(WelcomeModelTest, ConfirmingUntouchedStoresNoAppsAndBothFeatures) {
    settings.enabledFeatures().set({});
    welcome.confirm();
    EXPECT_TRUE(settings.enabledApps().get().empty()) << "earlier trigger apps are replaced";
    EXPECT_EQ(settings.enabledFeatures().get(),
              (std::set<Feature>{Feature::keyboardBacklight, Feature::nightShift}));
    EXPECT_TRUE(settings.welcomeScreenShown().get());
    EXPECT_EQ(closeRequests, 1);
}

TEST_F(WelcomeModelTest, ConfirmingStoresTheChoiceWhole) {
    welcome.selectedApps().setSelected(vlc, true);
    welcome.selectedFeatures().setSelected(Feature::nightShift, false);
    welcome.confirm();
    EXPECT_EQ(settings.enabledApps().get(), std::set<AppItem>{vlc});
    EXPECT_EQ(settings.enabledFeatures().get(), std::set<Feature>{Feature::keyboardBacklight});
}

TEST_F(WelcomeModelTest, ClosingTurnsLaunchAtLoginOnOnlyWhenOffThenLeavesTheDock) {
    std::vector<std::string> loginCallsAtPolicy;
    sim.application.onCall = [&](const std::string&) { loginCallsAtPolicy = loginItems.calls; };
    welcome.windowWillClose();
    ASSERT_FALSE(loginCallsAtPolicy.empty());
    EXPECT_EQ(loginCallsAtPolicy.back(), "register");
    EXPECT_TRUE(launchAtLogin.isEnabled());
    EXPECT_EQ(sim.application.calls, std::vector<std::string>{"policy accessory"});

    loginItems.calls.clear();
    welcome.windowWillClose();
    EXPECT_EQ(loginItems.calls, std::vector<std::string>{"status"});
    EXPECT_EQ(sim.application.policy, ActivationPolicy::accessory);
}

}  // namespace
}  // namespace marzipel
