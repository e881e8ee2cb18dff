#include <gtest/gtest.h>

#include "core/marzipel_system_client.h"
#include "diagnostics/file_logger.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_brightness_service.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

struct MarzipelSystemClientTest : testing::Test {
    TempFolder home;
    SimUserDirectories directories;
    SimClock clock;
    SimConsole console;
    SimBrightnessWorld world;
    SimBrightnessServiceFactory factory{world};
    SettingsManager settings{std::make_shared<SimPreferencesStore>(), console};

    MarzipelSystemClientTest() {
        directories.documents = home.path().string();
        FileLogger::setShared(FileLogger::create(directories, clock, console));
    }
    ~MarzipelSystemClientTest() override { FileLogger::setShared(nullptr); }
    std::string logText() const { return readFile(home.file("Marzipel_debug.log")); }
};

TEST_F(MarzipelSystemClientTest, CallsThePlatformAndLogsOnlyWhenDebugLoggingIsOn) {
    MarzipelSystemClient client(factory.create(), settings);
    world.keyboard = 0.25f;
    EXPECT_EQ(client.keyboardBrightness(), 0.25f);
    client.setKeyboardBrightness(0.0f);
    settings.debugLoggingEnabled().set(true);
    client.setKeyboardBrightness(0.5f);
    client.disableNightShift();
    client.enableNightShift();
    client.setNightShiftMode(1);
    world.status.from = {22, 0};
    EXPECT_EQ(client.nightShiftStatus().from, (BlueLightStatus::Time{22, 0}));
    EXPECT_EQ(world.calls, (std::vector<std::string>{
                               "app brightnessForKeyboard 1", "app setBrightness 0.0 1",
                               "app setBrightness 0.5 1", "app setEnabled false",
                               "app setEnabled true", "app setMode 1", "app getBlueLightStatus"}));
    const std::string stamp = "1/1/26, 12:00:00 PM UTC: ";
    EXPECT_EQ(logText(), stamp + "Setting keyboard brightness to 0.5\n" + stamp +
                             "Disabling Night Shift\n" + stamp + "Enabling Night Shift\n");
}

TEST(MarzipelSystemClientDeathTest, MissingKeyboardClientStopsTheProcess) {
    SimConsole console;
    SettingsManager settings(std::make_shared<SimPreferencesStore>(), console);
    EXPECT_DEATH(MarzipelSystemClient(nullptr, settings), "");
}

}  // namespace
}  // namespace marzipel
