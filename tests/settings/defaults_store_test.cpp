#include <gtest/gtest.h>

#include <thread>

#include "platform/sim/sim_basics.h"
#include "settings/defaults_observable.h"
#include "settings/defaults_observation.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct DefaultsFixture : testing::Test {
    std::shared_ptr<SimPreferencesStore> store = std::make_shared<SimPreferencesStore>();
    SimConsole console;
};

using DefaultsStoreTest = DefaultsFixture;

// The stored forms of every key, and values that cannot be read, are run end to end by the
// defaults-stored-forms scenario; these cover what it cannot reach.
TEST_F(DefaultsStoreTest, AbsentValuesAreLeftOutOfRecordsAndRemoveOptionalKeys) {
    SettingsManager settings(store, console);
    settings.marzipelData().set(MarzipelData{true, std::nullopt});
    EXPECT_EQ(store->object("marzipelData"), PlistValue(R"({"nightShiftEnabled":true})"));
    EXPECT_EQ(settings.marzipelData().get(), (MarzipelData{true, std::nullopt}));

    Key<std::optional<std::string>> key("lastFolder", std::nullopt, store, console);
    EXPECT_FALSE(store->object("lastFolder"));
    key.set(std::string("/tmp"));
    EXPECT_EQ(key.get(), std::optional<std::string>("/tmp"));
    key.set(std::nullopt);
    EXPECT_EQ(store->writes.back(), "remove lastFolder");
    EXPECT_EQ(key.get(), std::nullopt);
}

TEST_F(DefaultsStoreTest, ValuesOfTheWrongKindReadAsDefaultAndStayStored) {
    SettingsManager settings(store, console);
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
    // An array of natives must be that kind throughout.
    Key<std::set<std::string>> names("names", {}, store, console);
    store->setObject("names", PlistArray{"a", 1});
    EXPECT_TRUE(names.get().empty());
    store->setObject("names", PlistArray{"a", "b"});
    EXPECT_EQ(names.get(), (std::set<std::string>{"a", "b"}));
}

TEST_F(DefaultsStoreTest, ValueThatCannotBeEncodedIsPrintedAndRemovesTheStoredValue) {
    SettingsManager settings(store, console);
    settings.marzipelData().set(MarzipelData{true, 0.5f});
    settings.marzipelData().set(MarzipelData{true, std::numeric_limits<float>::quiet_NaN()});
    EXPECT_EQ(console.lines.size(), 1u);
    EXPECT_EQ(store->writes.back(), "remove marzipelData");
    EXPECT_EQ(settings.marzipelData().get(), MarzipelData{});

    settings.enabledApps().set({AppItem{"bad\xff", "x", std::nullopt}});
    EXPECT_EQ(console.lines.size(), 2u);
    EXPECT_TRUE(settings.enabledApps().get().empty());
}

using DefaultsObservationTest = DefaultsFixture;

TEST_F(DefaultsObservationTest, DeliversOldAndNewValuesWithTheChosenOptions) {
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

TEST_F(DefaultsObservationTest, NoPropagationSilencesOnlyTheRaisingThread) {
    Key<std::int64_t> key("count", 0, store, console);
    std::mutex mutex;
    std::vector<std::int64_t> delivered;
    auto observation = observe(key, ObservationOption::none, [&](const KeyChange<std::int64_t>& c) {
        std::lock_guard lock(mutex);
        delivered.push_back(c.newValue);
    });

    withoutPropagation([&] {
        key.set(1);
        std::thread other([&] { key.set(2); });
        other.join();
        key.set(3);
    });
    key.set(4);
    EXPECT_EQ(delivered, (std::vector<std::int64_t>{2, 4}));
}

TEST_F(DefaultsObservationTest, ObserversWritingEachOthersKeysDoNotLoop) {
    Key<std::int64_t> a("a", 0, store, console);
    Key<std::int64_t> b("b", 0, store, console);
    int calls = 0;
    auto onA = observe(a, ObservationOption::none, [&](const KeyChange<std::int64_t>& change) {
        ++calls;
        withoutPropagation([&] { b.set(change.newValue); });
    });
    auto onB = observe(b, ObservationOption::none, [&](const KeyChange<std::int64_t>& change) {
        ++calls;
        withoutPropagation([&] { a.set(change.newValue); });
    });
    a.set(5);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(b.get(), 5);
}

TEST_F(DefaultsObservationTest, CompositeLifetimeAndGoneStore) {
    Key<bool> a("a", false, store, console);
    Key<bool> b("b", false, store, console);
    int composite = 0;
    auto both = observe(
        ObservationOption::none, [&] { ++composite; }, a, b);
    a.set(true);
    b.set(true);
    EXPECT_EQ(composite, 2);
    both->invalidate();
    a.set(false);
    EXPECT_EQ(composite, 2);

    // Tied to an owner: delivered while the owner lives, ended once it is gone.
    int tied = 0;
    auto owner = std::make_shared<int>(0);
    observe(a, ObservationOption::none, [&](const KeyChange<bool>&) {
        ++tied;
    })->tieToLifetime(owner);
    a.set(true);
    owner.reset();
    a.set(false);
    a.set(true);
    EXPECT_EQ(tied, 1);

    std::weak_ptr<PreferencesStore> gone;
    {
        auto temporary = std::make_shared<SimPreferencesStore>();
        gone = temporary;
    }
    KeyObservation orphan(gone, "a", ObservationOption::initial, [](const PreferencesChange&) {
        FAIL() << "a store that is gone delivers nothing";
    });
    orphan.start();
    EXPECT_FALSE(orphan.isObserving());
}

TEST_F(DefaultsObservationTest, ToggleStoresThenRunsItsAction) {
    Key<bool> key("debugLoggingEnabled", false, store, console);
    std::vector<std::string> events;
    DefaultsToggle toggle("Enable debug logging", key, [&](bool on) {
        events.push_back(std::string("action ") + (on ? "on" : "off") +
                         (key.get() ? " stored" : ""));
    });
    auto announced = toggle.observable().onWillChange([&] { events.push_back("will change"); });
    toggle.setOn(true);
    key.set(false);
    EXPECT_EQ(events, (std::vector<std::string>{"will change", "action on stored", "will change"}));
    EXPECT_FALSE(toggle.isOn());
}

}  // namespace
}  // namespace marzipel
