#include <gtest/gtest.h>

#include "base/float_text.h"
#include "core/marzipel_system_client.h"
#include "diagnostics/file_logger.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_brightness_service.h"
#include "settings/settings_manager.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

TEST(FloatTextTest, ShortestRoundTripWithAFractionalPart) {
    EXPECT_EQ(floatText(0.0f), "0.0");
    EXPECT_EQ(floatText(0.5f), "0.5");
    EXPECT_EQ(floatText(1.0f), "1.0");
    EXPECT_EQ(floatText(0.7f), "0.7");
    EXPECT_EQ(floatText(0.1f + 0.2f), "0.3");
    EXPECT_EQ(floatText(0.30000001f), "0.3");
    EXPECT_EQ(floatText(0.0001f), "0.0001");
    EXPECT_EQ(floatText(1e-7f), "1.0e-07");
    EXPECT_EQ(floatText(2.5e-5f), "2.5e-05");
    EXPECT_EQ(floatText(100000.0f), "100000.0");
    EXPECT_EQ(floatText(1e30f), "1.0e+30");
}

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

TEST_F(MarzipelSystemClientTest, MissingNightShiftClientReadsZeroAndSendsNothing) {
    world.blueLightMissing = true;
    world.status = {true, 2, {22, 0}, {7, 0}};
    MarzipelSystemClient client(factory.create(), settings);
    EXPECT_EQ(client.nightShiftStatus(), BlueLightStatus{});
    client.enableNightShift();
    client.setNightShiftMode(0);
    EXPECT_TRUE(world.calls.empty());
}

TEST(MarzipelSystemClientDeathTest, MissingKeyboardClientStopsTheProcess) {
    SimConsole console;
    SettingsManager settings(std::make_shared<SimPreferencesStore>(), console);
    EXPECT_DEATH(MarzipelSystemClient(nullptr, settings), "");
}

}  // namespace
}  // namespace marzipel
