#include <gtest/gtest.h>

#include <vector>

#include "platform/sim/sim_application.h"
#include "ui/models/settings_access.h"
#include "ui/models/settings_view_model.h"
#include "ui/models/tray_commands.h"

namespace marzipel {
namespace {

using Calls = std::vector<std::string>;

struct SettingsAccessTest : testing::Test {
    NotificationCenter center;
    SimApplication application{center};
    Calls events;

    SettingsAccessTest() {
        application.onCall = [this](const std::string& call) { events.push_back(call); };
    }
    void answer(const std::string& action) { application.installDelegateAction(action, nullptr); }
    void press(const OpenSettingsAccessAction& open) {
        pressSettingsButton(
            open, application, [this] { events.push_back("pre"); },
            [this] { events.push_back("post"); });
    }
    /// A link that records its run and answers `result`.
    void link(OpenSettingsAccessAction& open, std::optional<OpenActionFailure> result) {
        open.installLink([this, result] {
            events.push_back("link");
            return result;
        });
    }
};

TEST_F(SettingsAccessTest, LegacyRoutePrefersTheSettingsActionAndTheButtonWrapsItAnyway) {
    application.version = {13, 6, 1};
    OpenSettingsAccessAction open(application);
    link(open, std::nullopt);
    answer("showPreferencesWindow:");
    EXPECT_EQ(open(), std::nullopt);
    answer("showSettingsWindow:");
    press(open);
    application.hasDelegate = false;
    EXPECT_EQ(open(), OpenSettingsFailure(OpenSettingsError::selectorNotFound));
    press(open);
    // Below 14.0 nothing replaces the legacy route: the link never runs.
    EXPECT_EQ(events, (Calls{"delegate showPreferencesWindow:", "pre",
                             "delegate showSettingsWindow:", "post", "pre", "post"}));

    application.hasDelegate = true;
    application.version = {14, 0, 0};
    EXPECT_EQ(openSettingsLegacy(application), LegacyOpenSettingsError::unsupportedPlatform);
    EXPECT_EQ(events.size(), 6u);
}

TEST_F(SettingsAccessTest, InstalledLinkErrorsReachTheCallerAsOpenSettingsErrors) {
    OpenSettingsAccessAction open(application);
    EXPECT_EQ(open(), OpenSettingsFailure(OpenSettingsError::settingsLinkNotConnected));

    std::optional<OpenActionFailure> failure;
    open.installLink([&] { return failure; });
    EXPECT_EQ(open(), std::nullopt);
    failure = LegacyOpenSettingsError::unsupportedPlatform;
    EXPECT_EQ(open(), OpenSettingsFailure(OpenSettingsError::unsupportedPlatform));
    failure = LegacyOpenSettingsError::selectorNotFound;
    EXPECT_EQ(open(), OpenSettingsFailure(OpenSettingsError::selectorNotFound));
    failure = OtherOpenSettingsError{"The operation couldn’t be completed."};
    EXPECT_EQ(open(),
              OpenSettingsFailure(OtherOpenSettingsError{"The operation couldn’t be completed."}));
}

// From 14.0 on the tray activates after opening; below it before sending, as the tray's test sees.
TEST_F(SettingsAccessTest, ButtonAndTrayOrderTheirStepsAroundTheLinkWhateverItAnswers) {
    OpenSettingsAccessAction open(application);
    press(open);
    link(open, OtherOpenSettingsError{"failed"});
    press(open);
    link(open, std::nullopt);
    openSettingsFromTray(open, application);
    EXPECT_EQ(events, (Calls{"pre", "post", "pre", "link", "post", "link", "activate"}));
}

struct SettingsViewModelTest : testing::Test {
    std::vector<std::function<void()>> posted;
    PostToMainLoop post = [this](std::function<void()> task) { posted.push_back(std::move(task)); };
    std::unique_ptr<SettingsViewModel> model = std::make_unique<SettingsViewModel>(post);

    void runPosted() {
        auto tasks = std::move(posted);
        posted.clear();
        for (auto& task : tasks) task();
    }
};

// Which key combinations toggle, and the window following the model, are checked through the
// settings window; this covers the deferred toggle, which the window test cannot see.
TEST_F(SettingsViewModelTest, TogglesWhenItsPostedTaskRunsAndNotOnceTheModelIsGone) {
    model->keyReleased({.key = 'D', .shift = true, .command = true});
    EXPECT_FALSE(model->showAdvancedSettings()) << "not while the key event is handled";
    runPosted();
    EXPECT_TRUE(model->showAdvancedSettings());

    model->keyReleased({.key = 'D', .shift = true, .command = true});
    model.reset();
    // The new model most likely takes the freed place, where a stale toggle would show.
    model = std::make_unique<SettingsViewModel>(post);
    runPosted();
    EXPECT_FALSE(model->showAdvancedSettings());
}

}  // namespace
}  // namespace marzipel
