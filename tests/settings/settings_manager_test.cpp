#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "platform/sim/sim_basics.h"
#include "settings/selections.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

std::optional<Feature> decodeFeature(const std::string& text, std::string* error = nullptr) {
    try {
        return nlohmann::json::parse(text).get<Feature>();
    } catch (const std::exception& e) {
        if (error) *error = e.what();
        return std::nullopt;
    }
}

// The stored form of each feature is read back by the acceptance scenarios.
TEST(FeatureTest, ReadsTheOneKnownMemberWhateverItHolds) {
    EXPECT_EQ(decodeFeature(R"({"nightShift":{"x":1}})"), Feature::nightShift);
    EXPECT_EQ(decodeFeature(R"({"nightShift":{},"foo":{}})"), Feature::nightShift);

    for (const char* bad : {"{}", R"({"nightShift":{},"keyboardBacklight":{}})", R"({"foo":{}})"}) {
        std::string error;
        EXPECT_EQ(decodeFeature(bad, &error), std::nullopt) << bad;
        EXPECT_EQ(error, "Invalid number of keys found, expected one.") << bad;
    }
    EXPECT_EQ(decodeFeature(R"("nightShift")"), std::nullopt);
    EXPECT_EQ(decodeFeature(R"({"nightShift":1})"), std::nullopt);
}

struct SettingsManagerTest : testing::Test {
    std::shared_ptr<SimPreferencesStore> store = std::make_shared<SimPreferencesStore>();
    SimConsole console;
    SettingsManager settings{store, console};
    AppItem vlc{"org.videolan.vlc", "VLC", std::nullopt};
};

TEST_F(SettingsManagerTest, AddComparesIdsButRemoveComparesWholeItems) {
    settings.addTriggerApp(vlc);
    ASSERT_EQ(store->writes.size(), 1u);

    settings.addTriggerApp(AppItem{"org.videolan.vlc", "VLC media player", "/x.icns"});
    EXPECT_EQ(store->writes.size(), 1u) << "a known id writes nothing";

    settings.removeTriggerApp(AppItem{"org.videolan.vlc", "VLC media player", std::nullopt});
    EXPECT_EQ(store->writes.size(), 2u) << "the unchanged set is written back";
    EXPECT_EQ(settings.enabledApps().get(), std::set<AppItem>{vlc});

    settings.removeTriggerApp(vlc);
    EXPECT_TRUE(settings.enabledApps().get().empty());
}

// Which features the welcome starts with and stores is run through the welcome window.
TEST_F(SettingsManagerTest, WelcomeSelectionsCommitWithDuplicatesCollapsed) {
    SelectedApps apps;
    SelectedFeatures features;
    int announcements = 0;
    auto announced = apps.onWillChange([&] { ++announcements; });
    AppItem iina{"com.colliderli.iina", "IINA", "/Applications/IINA.app/Contents/Resources/a.icns"};

    apps.setSelected(vlc, true);
    apps.setSelected(iina, true);
    apps.setSelected(vlc, true);
    EXPECT_EQ(apps.value().size(), 3u);
    EXPECT_FALSE(apps.isSelected(AppItem{vlc.id, vlc.name, "/other.icns"}));

    commitWelcomeSelections(settings, apps, features);
    EXPECT_EQ(settings.enabledApps().get(), (std::set<AppItem>{vlc, iina}));

    apps.setSelected(vlc, false);
    EXPECT_EQ(apps.value(), std::vector<AppItem>{iina});
    EXPECT_EQ(announcements, 4);
}

TEST_F(SettingsManagerTest, KeysAreCreatedOnceAcrossThreads) {
    std::vector<std::thread> threads;
    std::vector<const Key<bool>*> seen(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] { seen[i] = &settings.debugLoggingEnabled(); });
    }
    for (auto& thread : threads) thread.join();
    for (const auto* key : seen) EXPECT_EQ(key, seen.front());
}

}  // namespace
}  // namespace marzipel
