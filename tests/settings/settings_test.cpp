#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_login_item_service.h"
#include "settings/defaults_observation.h"
#include "settings/launch_at_login.h"
#include "settings/selections.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct SettingsTest : testing::Test {
    std::shared_ptr<SimPreferencesStore> store = std::make_shared<SimPreferencesStore>();
    SimConsole console;
    SettingsManager settings{store, console};
    AppItem vlc{"org.videolan.vlc", "VLC", std::nullopt};
};

// The stored forms of every key, a record without a keyboard value among them, and values
// that cannot be read are run end to end by the defaults-stored-forms and
// settings-while-active scenarios; these cover what they cannot reach.
TEST_F(SettingsTest, ValuesOfTheWrongKindReadAsDefaultAndStayStored) {
    store->setObject("marzipelData",
                     R"({"keyboardBacklightValue":1e300,"nightShiftEnabled":true})");
    store->setObject("enabledFeatures", 42);
    store->setObject("debugLoggingEnabled", "yes");
    const auto writesBefore = store->writes.size();
    EXPECT_EQ(settings.marzipelData().get(), MarzipelData{});
    EXPECT_EQ(settings.enabledFeatures().get(), settings.enabledFeatures().defaultValue());
    EXPECT_FALSE(settings.debugLoggingEnabled().get());
    EXPECT_EQ(store->writes.size(), writesBefore);

    // One element that is not even a string means this is no array of stored features.
    store->setObject("enabledFeatures", PlistArray{R"({"onlyWhenPlayingVideo":{}})", 7});
    EXPECT_EQ(settings.enabledFeatures().get(), settings.enabledFeatures().defaultValue());
}

TEST_F(SettingsTest, ValueThatCannotBeEncodedIsPrintedAndRemovesTheStoredValue) {
    settings.marzipelData().set(MarzipelData{true, 0.5f});
    settings.marzipelData().set(MarzipelData{true, std::numeric_limits<float>::quiet_NaN()});
    EXPECT_EQ(console.lines.size(), 1u);
    EXPECT_EQ(store->writes.back(), "remove marzipelData");
    EXPECT_EQ(settings.marzipelData().get(), MarzipelData{});

    settings.enabledApps().set({AppItem{"bad\xff", "x", std::nullopt}});
    EXPECT_EQ(console.lines.size(), 2u);
    EXPECT_TRUE(settings.enabledApps().get().empty());
}

// The store also tells observers before each change; observers that did not ask for that
// must not see it, and asking for both the initial value and prior notices gets only the first.
TEST_F(SettingsTest, DeliversOldAndNewValuesWithTheChosenOptions) {
    Key<bool> key("flag", false, store, console);
    std::vector<std::string> seen;
    auto record = [&](const char* name) {
        return [&seen, name](const KeyChange<bool>& change) {
            seen.push_back(std::string(name) + (change.isPrior ? " prior " : " ") +
                           std::to_string(change.oldValue) + "->" +
                           std::to_string(change.newValue));
        };
    };
    auto plain = observe(key, ObservationOption::none, record("plain"));
    auto initial = observe(key, ObservationOption::initial, record("initial"));
    auto prior = observe(key, ObservationOption::prior, record("prior"));
    auto both = observe(key, ObservationOption::initial | ObservationOption::prior, record("both"));
    EXPECT_EQ(seen, (std::vector<std::string>{"initial 0->0", "both 0->0"}));

    seen.clear();
    key.set(true);
    EXPECT_EQ(seen, (std::vector<std::string>{"prior prior 0->0", "plain 0->1", "initial 0->1",
                                              "prior 0->1", "both 0->1"}));

    seen.clear();
    prior->invalidate();
    prior->invalidate();
    EXPECT_FALSE(prior->isObserving());
    initial.reset();
    store->removeObject("flag");
    EXPECT_EQ(seen, (std::vector<std::string>{"plain 1->0", "both 1->0"}));
}

// Observers that write each other's keys would call each other forever without it.
TEST_F(SettingsTest, NoPropagationSilencesOnlyTheRaisingThreadAndBreaksLoops) {
    Key<std::int64_t> a("a", 0, store, console);
    Key<std::int64_t> b("b", 0, store, console);
    std::mutex mutex;
    std::vector<std::int64_t> delivered;
    auto observation = observe(a, ObservationOption::none, [&](const KeyChange<std::int64_t>& c) {
        std::lock_guard lock(mutex);
        delivered.push_back(c.newValue);
    });
    withoutPropagation([&] {
        a.set(1);
        std::thread other([&] { a.set(2); });
        other.join();
        a.set(3);
    });
    a.set(4);
    EXPECT_EQ(delivered, (std::vector<std::int64_t>{2, 4}));

    auto onA = observe(a, ObservationOption::none, [&](const KeyChange<std::int64_t>& change) {
        withoutPropagation([&] { b.set(change.newValue); });
    });
    auto onB = observe(b, ObservationOption::none, [&](const KeyChange<std::int64_t>& change) {
        withoutPropagation([&] { a.set(change.newValue); });
    });
    a.set(5);
    EXPECT_EQ(delivered, (std::vector<std::int64_t>{2, 4, 5}));
    EXPECT_EQ(b.get(), 5);
}

// The stored form of each feature is read back by the acceptance scenarios.
TEST(FeatureTest, ReadsTheOneKnownMemberWhateverItHolds) {
    const auto read = [](const char* text) {
        return DefaultsBridge<Feature>::deserialize(PlistValue(text));
    };
    EXPECT_EQ(read(R"({"nightShift":{"x":1}})"), Feature::nightShift);
    EXPECT_EQ(read(R"({"nightShift":{},"foo":{}})"), Feature::nightShift);
    for (const char* bad : {"{}", R"({"nightShift":{},"keyboardBacklight":{}})", R"({"foo":{}})",
                            R"("nightShift")", R"({"nightShift":1})"})
        EXPECT_EQ(read(bad), std::nullopt) << bad;
}

// Adding a known id is run by the defaults-stored-forms scenario.
TEST_F(SettingsTest, RemoveComparesWholeItems) {
    settings.addTriggerApp(vlc);
    settings.removeTriggerApp(AppItem{"org.videolan.vlc", "VLC media player", std::nullopt});
    EXPECT_EQ(settings.enabledApps().get(), std::set<AppItem>{vlc});

    settings.removeTriggerApp(vlc);
    EXPECT_TRUE(settings.enabledApps().get().empty());
}

// Which features the welcome starts with and stores is run through the welcome window.
TEST_F(SettingsTest, WelcomeSelectionsCommitWithDuplicatesCollapsed) {
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

// Turning on while on registers afresh; a failing preparatory unregister is neither reported
// nor a reason not to register.
TEST(LaunchAtLoginTest, RegistersAfreshAfterAnnouncingAndLogsOnlyRealFailures) {
    SimLoginItemService service;
    SimSystemLog log;
    LaunchAtLogin launchAtLogin{service, log};
    service.currentStatus = LoginItemStatus::enabled;
    service.unregisterError = "Operation not permitted";
    std::vector<std::size_t> serviceCallsWhenAnnounced;
    auto announced = launchAtLogin.onWillChange(
        [&] { serviceCallsWhenAnnounced.push_back(service.calls.size()); });
    launchAtLogin.setEnabled(true);
    EXPECT_EQ(serviceCallsWhenAnnounced, (std::vector<std::size_t>{0}));
    EXPECT_EQ(service.calls, (std::vector<std::string>{"status", "unregister", "register"}));

    service.currentStatus = LoginItemStatus::notRegistered;
    service.calls.clear();
    service.registerError = "The operation couldn't be completed.";
    launchAtLogin.setEnabled(true);
    EXPECT_EQ(service.calls, (std::vector<std::string>{"status", "register"}));
    EXPECT_FALSE(launchAtLogin.isEnabled());

    service.currentStatus = LoginItemStatus::enabled;
    launchAtLogin.setEnabled(false);
    EXPECT_TRUE(launchAtLogin.isEnabled());
    EXPECT_EQ(log.entries,
              (std::vector<std::string>{
                  "com.quintavellor.LaunchAtLogin/main: Failed to enable launch at login: The "
                  "operation couldn't be completed.",
                  "com.quintavellor.LaunchAtLogin/main: Failed to disable launch at login: "
                  "Operation not permitted"}));
}

}  // namespace
}  // namespace marzipel
