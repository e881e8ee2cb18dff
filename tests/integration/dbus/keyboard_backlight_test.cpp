#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <filesystem>
#include <limits>
#include <memory>

#include "mock_service.h"
#include "platform/linux/keyboard_backlight.h"
#include "platform/linux/linux_brightness_service.h"
#include "platform/sim/sim_basics.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

const QString kUPower = QStringLiteral("org.freedesktop.UPower");
const QString kKbdPath = QStringLiteral("/org/freedesktop/UPower/KbdBacklight");

std::unique_ptr<MockService> startUPower(int max, int level) {
    return std::make_unique<MockService>(
        "upower_kbd_backlight", kUPower, true,
        "{\"max\": " + std::to_string(max) + ", \"level\": " + std::to_string(level) + "}");
}

std::vector<int> levelsSet(const MockService& upower) {
    std::vector<int> levels;
    for (const QVariantList& arguments : upower.calls(kKbdPath, "SetBrightness")) {
        levels.push_back(arguments.at(0).toInt());
    }
    return levels;
}

TEST(KeyboardLevels, RoundToTheNearestLevelWithinRange) {
    EXPECT_EQ(levelOfFraction(0.5f, 3), 2);
    EXPECT_EQ(levelOfFraction(0.49f, 3), 1);
    EXPECT_EQ(levelOfFraction(0.0f, 3), 0);
    EXPECT_EQ(levelOfFraction(1.7f, 3), 3);
    EXPECT_EQ(levelOfFraction(-0.2f, 3), 0);
    EXPECT_EQ(levelOfFraction(std::numeric_limits<float>::quiet_NaN(), 3), 0);
    EXPECT_EQ(levelOfFraction(0.5f, 0), 0);
    EXPECT_FLOAT_EQ(fractionOfLevel(1, 3), 1.0f / 3);
    EXPECT_FLOAT_EQ(fractionOfLevel(5, 3), 1.0f);
    EXPECT_FLOAT_EQ(fractionOfLevel(2, 0), 0.0f);
}

/// A level change that does not pass through the adapters, as another program's would.
void setLevelElsewhere(int level) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        kUPower, kKbdPath, "org.freedesktop.UPower.KbdBacklight", "SetBrightness");
    message.setArguments({level});
    ASSERT_EQ(QDBusConnection::systemBus().call(message).type(), QDBusMessage::ReplyMessage);
}

// Levels both ways through UPower are also run by the program test, on the keyboard it dims.
TEST(UPowerKeyboard, ReadAheadServesOneTurnAndAVanishingServiceIsSurvivedAndLogged) {
    auto upower = startUPower(3, 2);
    SimSystemLog log;
    TempFolder noLeds;
    LinuxBrightnessServiceFactory factory(log, noLeds.path());
    auto reader = factory.create();
    auto writer = factory.create();

    factory.readAhead();
    setLevelElsewhere(1);
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 2.0f / 3) << "the level read ahead";
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 1.0f / 3) << "asked again";
    EXPECT_EQ(upower->calls(kKbdPath, "GetBrightness").size(), 2u)
        << "both clients wanted the level, but it was read ahead once";
    factory.readAhead();
    QCoreApplication::processEvents();
    setLevelElsewhere(0);
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 0.0f) << "the turn has ended";
    factory.readAhead();
    writer->setBrightness(1.0f, 1);
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 1.0f) << "a later call may change it";
    EXPECT_TRUE(log.entries.empty());

    upower->stop();
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 0.0f);
    writer->setBrightness(0.25f, 1);
    ASSERT_EQ(log.entries.size(), 2u);
    EXPECT_NE(log.entries[1].find("Could not set the keyboard backlight"), std::string::npos);
    // Back with other hardware: the maximum known before is not trusted.
    upower = startUPower(8, 1);
    writer->setBrightness(0.75f, 1);
    EXPECT_EQ(levelsSet(*upower), (std::vector<int>{6}));
    EXPECT_FLOAT_EQ(reader->brightnessForKeyboard(1), 0.75f);
}

TEST(LedKeyboard, OnlyAKeyboardLedCountsAndItIsWrittenThroughTheLogindSession) {
    SimSystemLog log;
    TempFolder leds;
    std::filesystem::create_directory(leds.path() / "input3::capslock");
    LinuxBrightnessServiceFactory none(log, leds.path());
    auto first = none.create();
    auto second = none.create();
    first->setBrightness(0.5f, 1);
    EXPECT_FLOAT_EQ(second->brightnessForKeyboard(1), 0.0f);
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("No keyboard backlight"), std::string::npos);
    log.entries.clear();

    const auto led = leds.path() / "tpacpi::kbd_backlight";
    writeFile(led / "max_brightness", "2\n");
    writeFile(led / "brightness", "1\n");
    MockService logind("logind", "org.freedesktop.login1", true);
    const QString session = QStringLiteral("/org/freedesktop/login1/session/auto");
    logind.control("/org/freedesktop/login1", "AddSession",
                   {"auto", "seat0", QVariant::fromValue(1000u), "user", true});
    // Like logind, the mock changes the LED's file.
    logind.control(session, "AddMethod",
                   {"org.freedesktop.login1.Session", "SetBrightness", "ssu", "",
                    QString::fromStdString("open('" + (led / "brightness").string() +
                                           "', 'w').write(str(args[2]))")});

    LinuxBrightnessServiceFactory factory(log, leds.path());
    auto service = factory.create();
    EXPECT_FLOAT_EQ(service->brightnessForKeyboard(1), 0.5f);
    service->setBrightness(1.0f, 1);
    service->setBrightness(0.0f, 1);

    const auto calls = logind.calls(session, "SetBrightness");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0], (QVariantList{"leds", "tpacpi::kbd_backlight", 2u}));
    EXPECT_EQ(calls[1].at(2).toUInt(), 0u);
    EXPECT_FLOAT_EQ(service->brightnessForKeyboard(1), 0.0f);
    EXPECT_TRUE(log.entries.empty());
}

}  // namespace
}  // namespace marzipel::dbustest
