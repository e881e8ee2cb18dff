#include "platform/macos/mac_preferences_store.h"

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace marzipel {
namespace {

/// A preferences domain of its own, removed afterwards.
struct MacPreferencesStoreTest : testing::Test {
    std::string suite = "com.orsavelt.Marzipel.tests." +
                        std::string(NSProcessInfo.processInfo.globallyUniqueString.UTF8String);
    MacPreferencesStore store{suite};

    ~MacPreferencesStoreTest() override {
        [NSUserDefaults.standardUserDefaults
            removePersistentDomainForName:[NSString stringWithUTF8String:suite.c_str()]];
    }
};

TEST_F(MacPreferencesStoreTest, EveryPropertyListKindIsStoredAsItIs) {
    const PlistDictionary record{
        {"flag", true},
        {"count", std::int64_t{42}},
        {"ratio", 0.5},
        {"text", "Grüße"},
        {"bytes", PlistData{0, 1, 255}},
        {"when", PlistDate{123456.5}},
        {"list", PlistArray{"a", std::int64_t{1}, PlistArray{}}},
    };
    store.setObject("record", record);
    EXPECT_EQ(store.object("record"), PlistValue(record));
    EXPECT_EQ(store.object("missing"), std::nullopt);

    store.registerDefaults({{"record", "default"}, {"flag", false}});
    EXPECT_EQ(store.object("flag"), PlistValue(false));
    store.removeObject("record");
    EXPECT_EQ(store.object("record"), PlistValue("default"));

    store.setObject("record", std::string("\xff not UTF-8"));
    EXPECT_EQ(store.object("record"), PlistValue("default"));
}

TEST_F(MacPreferencesStoreTest, ObserversSeeEachChangeBeforeAndAfterOnTheWritingThread) {
    store.registerDefaults({{"name", "default"}});
    std::vector<PreferencesChange> seen;
    const auto observer =
        store.addObserver("name", [&](const PreferencesChange& change) { seen.push_back(change); });
    const auto otherKey = store.addObserver("other", [&](const PreferencesChange& change) {
        ADD_FAILURE() << "told of " << change.key;
    });

    store.setObject("name", "first");
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_TRUE(seen[0].isPrior);
    EXPECT_EQ(seen[0].oldValue, PlistValue("default"));
    EXPECT_EQ(seen[0].newValue, std::nullopt);
    EXPECT_FALSE(seen[1].isPrior);
    EXPECT_EQ(seen[1].key, "name");
    EXPECT_EQ(seen[1].oldValue, PlistValue("default"));
    EXPECT_EQ(seen[1].newValue, PlistValue("first"));

    seen.clear();
    store.removeObject("name");
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1].oldValue, PlistValue("first"));
    EXPECT_EQ(seen[1].newValue, PlistValue("default"));

    seen.clear();
    store.removeObserver(observer);
    store.removeObserver(otherKey);
    store.setObject("name", "second");
    EXPECT_TRUE(seen.empty());
}

TEST_F(MacPreferencesStoreTest, AnObserverMayRemoveItselfWhileItIsCalled) {
    int calls = 0;
    PreferencesStore::ObserverId self = 0;
    self = store.addObserver("name", [&](const PreferencesChange&) {
        ++calls;
        store.removeObserver(self);
    });
    store.setObject("name", "first");
    store.setObject("name", "second");
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace marzipel
