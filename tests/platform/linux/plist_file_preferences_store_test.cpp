#include "platform/linux/files/plist_file_preferences_store.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <regex>
#include <thread>

#include "platform/plist/plist_codec.h"
#include "platform/sim/sim_basics.h"
#include "support/child_process.h"
#include "support/scoped_env.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

namespace fs = std::filesystem;

class PlistFilePreferencesStoreTest : public ::testing::Test {
protected:
    std::vector<std::string> folderEntries() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(fs::path(path).parent_path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::optional<PlistValue> fileContents() const { return readPropertyListFile(path); }

    TempFolder folder;
    std::string path = folder.file("config/marzipel/com.orsavelt.Marzipel.plist");
    SimSystemLog log;
};

TEST_F(PlistFilePreferencesStoreTest, ScheduledWritesCoverABurstKeepNoDefaultsAndSurviveAReload) {
    std::vector<std::function<void()>> tasks;
    const auto schedule = [&tasks](std::function<void()> task) { tasks.push_back(task); };
    auto store = std::make_unique<PlistFilePreferencesStore>(path, log, schedule);
    EXPECT_TRUE(store->storedValues().empty()) << "a missing file is an empty domain";
    store->registerDefaults({{"welcomeScreenShown", false}, {"enabledApps", PlistArray{}}});
    store->setObject("debugLoggingEnabled", true);
    store->setObject("transient", 1);
    store->removeObject("transient");
    ASSERT_EQ(tasks.size(), 1u);
    EXPECT_FALSE(fs::exists(path));
    tasks[0]();
    EXPECT_EQ(fileContents(), PlistValue(PlistDictionary{{"debugLoggingEnabled", true}}));

    store->setObject("enabledApps", PlistArray{"{\"id\":\"org.videolan.vlc\"}"});
    ASSERT_EQ(tasks.size(), 2u);
    store.reset();
    const PlistDictionary expected{{"debugLoggingEnabled", true},
                                   {"enabledApps", PlistArray{"{\"id\":\"org.videolan.vlc\"}"}}};
    EXPECT_EQ(fileContents(), PlistValue(expected));
    tasks[1]();  // after the store is gone: nothing happens
    EXPECT_EQ(folderEntries(), std::vector<std::string>{"com.orsavelt.Marzipel.plist"});

    PlistFilePreferencesStore reloaded(path, log);
    EXPECT_EQ(reloaded.storedValues(), expected);
    EXPECT_TRUE(log.entries.empty());
}

TEST_F(PlistFilePreferencesStoreTest, UnreadableFileIsMovedAsideAndKeptThroughLaterSaves) {
    for (const std::string& bad : {std::string("garbage\n"), toXmlPropertyList(PlistArray{"x"})}) {
        fs::remove_all(folder.file("config"));
        writeFile(path, bad);
        log.entries.clear();
        PlistFilePreferencesStore store(path, log);
        EXPECT_TRUE(store.storedValues().empty());
        store.setObject("welcomeScreenShown", true);
        store.setObject("debugLoggingEnabled", true);

        const std::vector<std::string> names = folderEntries();
        ASSERT_EQ(names.size(), 2u);
        EXPECT_TRUE(std::regex_match(
            names[1], std::regex(R"(com\.orsavelt\.Marzipel\.plist\.corrupt-\d{8}T\d{6}Z)")))
            << names[1];
        const std::string aside = folder.file("config/marzipel/" + names[1]);
        EXPECT_EQ(readFile(aside), bad);
        EXPECT_EQ(fileContents(), PlistValue(PlistDictionary{{"debugLoggingEnabled", true},
                                                             {"welcomeScreenShown", true}}));
        ASSERT_EQ(log.entries.size(), 1u);
        EXPECT_TRUE(log.entries[0].starts_with("com.orsavelt/MarzipelApp: "));
        EXPECT_NE(log.entries[0].find(path), std::string::npos);
        EXPECT_NE(log.entries[0].find(aside), std::string::npos);
    }
}

TEST_F(PlistFilePreferencesStoreTest, WhatCannotBeSavedIsLoggedAndStaysInMemory) {
    PlistFilePreferencesStore store(path, log);
    writeFile(folder.file("config"), "a file where the folder should be");
    store.setObject("debugLoggingEnabled", true);
    EXPECT_EQ(store.object("debugLoggingEnabled"), PlistValue(true));
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_TRUE(log.entries[0].starts_with(
        "com.orsavelt/MarzipelApp: Could not save preferences to " + path))
        << log.entries[0];
}

TEST_F(PlistFilePreferencesStoreTest, SaveReplacesTheTargetOfALinkAndKeepsTheLink) {
    const std::string target = folder.file("dotfiles/Marzipel.plist");
    fs::create_directories(fs::path(path).parent_path());
    writeFile(target, toXmlPropertyList(PlistDictionary{{"welcomeScreenShown", true}}));
    fs::create_symlink(target, path);

    PlistFilePreferencesStore store(path, log);
    EXPECT_EQ(store.object("welcomeScreenShown"), PlistValue(true));
    store.setObject("debugLoggingEnabled", false);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(
        readPropertyListFile(target),
        PlistValue(PlistDictionary{{"debugLoggingEnabled", false}, {"welcomeScreenShown", true}}));
}

// A writer killed at random moments: the file always holds one whole save, never older than the
// one seen before, and the temporary file a killed writer leaves goes at the next start.
// MARZIPEL_SAVE_KILLS sets how many kills.
TEST_F(PlistFilePreferencesStoreTest, SavesKilledMidwayLeaveTheOldOrTheNewValueAndNoPileOfFiles) {
    const char* kills = std::getenv("MARZIPEL_SAVE_KILLS");
    const int rounds = kills ? std::atoi(kills) : 100;
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<int> microseconds(0, 30000);
    PlistFilePreferencesStore(path, log).setObject("saved", "0:" + std::string(16 * 1024 - 2, 'x'));
    long last = 0;
    int leftovers = 0;
    for (int round = 0; round < rounds; ++round) {
        Child writer;
        ASSERT_EQ(startAndReadLine(writer, {PREFERENCES_WRITER, path}), "ready");
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        kill(writer.pid(), SIGKILL);
        writer.stop();

        const auto contents = fileContents();
        const auto* values = contents ? contents->as<PlistDictionary>() : nullptr;
        ASSERT_TRUE(values && values->contains("saved")) << "round " << round;
        const auto* saved = values->at("saved").as<std::string>();
        ASSERT_TRUE(saved && saved->size() == 16 * 1024) << "round " << round;
        const long count = std::stol(*saved);
        ASSERT_GE(count, last) << "round " << round;
        last = count;
        const auto names = folderEntries();
        leftovers += static_cast<int>(names.size()) - 1;
        ASSERT_LE(names.size(), 2u) << "round " << round << ": " << names.front() << " and more";
    }
    writeFile(folder.file("config/marzipel/.com.orsavelt.Marzipel.plist.AbC123"), "");
    PlistFilePreferencesStore store(path, log);
    EXPECT_EQ(folderEntries(), std::vector<std::string>{"com.orsavelt.Marzipel.plist"});
    EXPECT_TRUE(log.entries.empty());
    std::printf("%d kills, %d left a temporary file, %ld saves\n", rounds, leftovers, last);
}

TEST(PreferencesPathTest, FollowsXdgConfigHomeUnlessUnsetEmptyOrRelative) {
    ScopedEnv home("HOME", "/home/ada");
    ScopedEnv config("XDG_CONFIG_HOME", "/srv/config");
    EXPECT_EQ(defaultPreferencesPath(), "/srv/config/marzipel/com.orsavelt.Marzipel.plist");
    for (const auto& ignored : {std::optional<std::string>(""), {"relative/config"}, {}}) {
        config.set(ignored);
        EXPECT_EQ(defaultPreferencesPath(),
                  "/home/ada/.config/marzipel/com.orsavelt.Marzipel.plist");
    }
}

}  // namespace
}  // namespace marzipel
