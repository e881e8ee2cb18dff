#include "ui/models/apps_tab_model.h"

#include <gtest/gtest.h>

#include "ui/models/model_world.h"

namespace marzipel {
namespace {

using Names = std::vector<std::string>;

struct AppsTabModelTest : ModelWorld {
    std::unique_ptr<AppsTabModel> tab;

    /// Built on first use: it loads the running applications when made.
    AppsTabModel& model() {
        if (!tab) {
            tab = std::make_unique<AppsTabModel>(AppsTabModel::Services{
                settings, sim.workspace, catalog, filePicker, caseInsensitiveLess});
        }
        return *tab;
    }
};

TEST_F(AppsTabModelTest, TriggerAppsAreListedInTheGivenNameOrder) {
    // Neither the stored order (by id) nor byte order of the names gives this list.
    settings.addTriggerApp({"a.beta", "beta", std::nullopt});
    settings.addTriggerApp({"b.charlie", "Charlie", std::nullopt});
    settings.addTriggerApp({"c.alpha", "Alpha", std::nullopt});
    EXPECT_EQ(model().triggerApps(),
              (std::vector<AppItem>{{"c.alpha", "Alpha", std::nullopt},
                                    {"a.beta", "beta", std::nullopt},
                                    {"b.charlie", "Charlie", std::nullopt}}));
}

TEST_F(AppsTabModelTest, VideoSwitchChangesOneAppAndIsMissingForKnownPlayers) {
    const AppItem vlc{"org.videolan.vlc", "VLC", std::nullopt};
    const AppItem mpv{"io.mpv", "mpv", std::nullopt};
    const AppItem safari{"com.apple.Safari", "Safari", std::nullopt};
    EXPECT_FALSE(AppsTabModel::hasVideoSwitch(vlc));
    EXPECT_TRUE(AppsTabModel::hasVideoSwitch(mpv));
    EXPECT_TRUE(AppsTabModel::hasVideoSwitch({"org.videolan.VLC", "VLC", std::nullopt}));

    model().setOnlyWhenPlayingVideo(mpv, true);
    EXPECT_TRUE(model().onlyWhenPlayingVideo(mpv));
    EXPECT_FALSE(model().onlyWhenPlayingVideo(safari));
    model().setOnlyWhenPlayingVideo(safari, true);
    model().setOnlyWhenPlayingVideo(mpv, false);
    EXPECT_FALSE(model().onlyWhenPlayingVideo(mpv));
    EXPECT_TRUE(model().onlyWhenPlayingVideo(safari));
}

TEST_F(AppsTabModelTest, PickerOffersRegularAppsByNameAndMovesOnAfterEachAdd) {
    runApp(1, "com.example.beta", "beta");
    runApp(2, "com.example.agent", "Agent", ActivationPolicy::accessory);
    runApp(3, std::nullopt, std::nullopt);
    runApp(4, "com.example.alpha", "Alpha");
    const AppItem alpha{"com.example.alpha", "Alpha", std::nullopt};
    const AppItem beta{"com.example.beta", "beta", std::nullopt};
    const AppItem unknown{"", "Unknown App", std::nullopt};
    settings.addTriggerApp(alpha);

    EXPECT_EQ(model().runningApps(), (std::vector<AppItem>{alpha, beta, unknown}));
    EXPECT_EQ(model().selectedApp(), beta);
    model().addSelected();
    EXPECT_EQ(model().selectedApp(), unknown);
    model().addSelected();
    EXPECT_EQ(model().selectedApp(), unknown) << "every app is a trigger app: the choice stays";
    EXPECT_EQ(settings.enabledApps().get(), (std::set<AppItem>{alpha, beta, unknown}));

    runApp(5, "com.example.delta", "Delta");
    model().refresh();
    EXPECT_EQ(model().selectedApp(), (AppItem{"com.example.delta", "Delta", std::nullopt}));
}

TEST_F(AppsTabModelTest, ImportAddsReadableGrantedNewBundlesAndSkipsTheRestSilently) {
    addBundle("/Applications/One.app", "com.example.one", "One");
    addBundle("/Applications/Two.app", "com.example.two", "Two");
    addBundle("/Applications/Shut.app", "com.example.shut", "Shut");
    addBundle("/Applications/OneAgain.app", "com.example.one", "One Again");
    filePicker.refused = {"/Applications/Shut.app"};
    filePicker.result.paths = {"/Applications/One.app", "/Applications/Broken.app",
                               "/Applications/Shut.app", "/Applications/Two.app",
                               "/Applications/OneAgain.app"};
    model().browse();

    EXPECT_EQ(settings.enabledApps().get(),
              (std::set<AppItem>{{"com.example.one", "One", std::nullopt},
                                 {"com.example.two", "Two", std::nullopt}}));
    EXPECT_EQ(filePicker.released, (Names{"/Applications/One.app", "/Applications/Broken.app",
                                          "/Applications/Two.app", "/Applications/OneAgain.app"}));
    EXPECT_FALSE(model().isAlertShown());
}

TEST_F(AppsTabModelTest, PickerFailureShowsAFixedSentenceAndLogsTheSystemText) {
    settings.debugLoggingEnabled().set(true);
    FileLogger::setShared(FileLogger::create(sim.userDirectories, sim.clock, sim.console));
    filePicker.result.error = "The file “Movies” couldn’t be opened.";
    model().browse();

    EXPECT_TRUE(model().isAlertShown());
    EXPECT_EQ(model().alertMessage(), "Failed to import selected app.");
    EXPECT_EQ(
        readFile(home / "Marzipel_debug.log"),
        sim.clock.timestamp + ": Failed to import app: The file “Movies” couldn’t be opened.\n");
    EXPECT_TRUE(settings.enabledApps().get().empty());
    model().dismissAlert();
    EXPECT_FALSE(model().isAlertShown());
}

}  // namespace
}  // namespace marzipel
