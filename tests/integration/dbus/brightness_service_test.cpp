// The brightness service's clients: keyboard backlights through PowerDevil, UPower and logind
// (through gnome-settings-daemon in the program test), and blue-light filters, GNOME's through the
// real gsd-color and KWin's through a stand-in of each generation.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QTime>
#include <filesystem>
#include <limits>
#include <memory>

#include "gnome_color.h"
#include "mock_service.h"
#include "platform/linux/brightness/keyboard_backlight.h"
#include "platform/linux/brightness/linux_brightness_service.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

const QString kUPower = QStringLiteral("org.freedesktop.UPower");
const std::string kLogPrefix = "com.orsavelt/MarzipelApp: ";

TEST(KeyboardLevels, RoundToTheNearestLevelWithinRange) {
    EXPECT_EQ(levelOfFraction(0.5f, 3), 2);
    EXPECT_EQ(levelOfFraction(0.49f, 3), 1);
    EXPECT_EQ(levelOfFraction(1.7f, 3), 3);
    EXPECT_EQ(levelOfFraction(-0.2f, 3), 0);
    EXPECT_EQ(levelOfFraction(std::numeric_limits<float>::quiet_NaN(), 3), 0);
    EXPECT_EQ(levelOfFraction(0.5f, 0), 0);
    EXPECT_FLOAT_EQ(fractionOfLevel(5, 3), 1.0f);
    EXPECT_FLOAT_EQ(fractionOfLevel(2, 0), 0.0f);
}

/// The level `service` reads, -1 when the read fails.
float levelRead(BrightnessService& service) {
    const Result<float> read = service.brightnessForKeyboard(1);
    return read.ok() ? read.value() : -1.0f;
}

/// A level change that does not pass through the adapters, as another program's would.
void setLevelElsewhere(int level) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        kUPower, kKeyboardPath, "org.freedesktop.UPower.KbdBacklight", "SetBrightness");
    message.setArguments({level});
    ASSERT_EQ(QDBusConnection::systemBus().call(message).type(), QDBusMessage::ReplyMessage);
}

// Levels both ways through UPower are also run by the program test, on the keyboard it dims.
TEST(UPowerKeyboard, ReadAheadServesOneTurnAndAVanishingServiceIsSurvivedAndLogged) {
    auto upower = startKeyboardBacklight();
    SimSystemLog log;
    TempFolder noLeds;
    LinuxBrightnessServiceFactory factory(log, noLeds.path());
    EXPECT_EQ(log.infoEntries,
              std::vector<std::string>{kLogPrefix + "Keyboard backlight through UPower"});
    auto reader = factory.create();
    auto writer = factory.create();

    factory.readAhead();
    setLevelElsewhere(1);
    EXPECT_FLOAT_EQ(levelRead(*reader), 2.0f / 3) << "the level read ahead";
    EXPECT_FLOAT_EQ(levelRead(*reader), 1.0f / 3) << "asked again";
    EXPECT_EQ(upower->calls(kKeyboardPath, "GetBrightness").size(), 2u)
        << "both clients wanted the level, but it was read ahead once";
    factory.readAhead();
    QCoreApplication::processEvents();
    setLevelElsewhere(0);
    EXPECT_FLOAT_EQ(levelRead(*reader), 0.0f) << "the turn has ended";
    factory.readAhead();
    writer->setBrightness(1.0f, 1);
    EXPECT_FLOAT_EQ(levelRead(*reader), 1.0f) << "a later call may change it";
    // A failed read is no level: it says why, and the caller decides what to log.
    failKeyboardReads(*upower);
    const Result<float> failed = reader->brightnessForKeyboard(1);
    EXPECT_FALSE(failed.ok());
    EXPECT_EQ(failed.status().message(),
              "Could not read the keyboard backlight from UPower: "
              "org.freedesktop.UPower.GeneralError: the EC did not answer");
    EXPECT_TRUE(log.entries.empty());

    upower->stop();
    EXPECT_FALSE(reader->brightnessForKeyboard(1).ok());
    writer->setBrightness(0.25f, 1);
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("Could not set the keyboard backlight"), std::string::npos);
    // Back with other hardware: the maximum known before is not trusted.
    upower = startKeyboardBacklight(8, 1);
    writer->setBrightness(0.75f, 1);
    EXPECT_EQ(keyboardLevelsSet(*upower), (std::vector<int>{6}));
    EXPECT_FLOAT_EQ(levelRead(*reader), 0.75f);
}

// On KDE the keyboard goes through PowerDevil, which keeps the level it puts back; the light is
// set without PowerDevil's on-screen display, and UPower is not called behind its back.
TEST(PowerDevilKeyboard, ChosenOverUPowerAndSetSilentlyInLevels) {
    const auto upower = startKeyboardBacklight();
    MockService powerDevil("powerdevil_keyboard", "org.kde.Solid.PowerManagement", false,
                           R"({"max": 4, "level": 3})");
    const QString path =
        QStringLiteral("/org/kde/Solid/PowerManagement/Actions/KeyboardBrightnessControl");
    SimSystemLog log;
    TempFolder noLeds;
    LinuxBrightnessServiceFactory factory(log, noLeds.path());
    auto service = factory.create();
    EXPECT_FLOAT_EQ(levelRead(*service), 0.75f);
    service->setBrightness(0.0f, 1);
    service->setBrightness(0.75f, 1);
    EXPECT_EQ(powerDevil.calls(path, "setKeyboardBrightnessSilent"),
              (std::vector<QVariantList>{{0}, {3}}));
    EXPECT_TRUE(keyboardLevelsSet(*upower).empty());
    EXPECT_EQ(log.infoEntries,
              std::vector<std::string>{kLogPrefix + "Keyboard backlight through PowerDevil"});
    EXPECT_TRUE(log.entries.empty());
}

TEST(LedKeyboard, OnlyAKeyboardLedCountsAndItIsWrittenThroughTheLogindSession) {
    SimSystemLog log;
    TempFolder leds;
    std::filesystem::create_directory(leds.path() / "input3::capslock");
    LinuxBrightnessServiceFactory none(log, leds.path());
    auto first = none.create();
    auto second = none.create();
    first->setBrightness(0.5f, 1);
    EXPECT_EQ(second->brightnessForKeyboard(1).status().message(), "No keyboard backlight found");
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
    ASSERT_EQ(log.infoEntries.size(), 1u);
    EXPECT_TRUE(log.infoEntries[0].starts_with(kLogPrefix + "Keyboard backlight through logind"));
    auto service = factory.create();
    EXPECT_FLOAT_EQ(levelRead(*service), 0.5f);
    service->setBrightness(1.0f, 1);
    service->setBrightness(0.0f, 1);

    const auto calls = logind.calls(session, "SetBrightness");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0], (QVariantList{"leds", "tpacpi::kbd_backlight", 2u}));
    EXPECT_EQ(calls[1].at(2).toUInt(), 0u);
    EXPECT_FLOAT_EQ(levelRead(*service), 0.0f);
    EXPECT_TRUE(log.entries.empty());
}

/// A client pair as the program makes it, on a machine without a keyboard backlight; the line
/// that says so is dropped from `log`.
std::unique_ptr<BrightnessService> createWithoutKeyboard(SimSystemLog& log) {
    auto service = LinuxBrightnessServiceFactory(log, scratchFolder() / "no-leds").create();
    log.entries.clear();
    return service;
}

TEST(NightLightScheduleKeys, FractionalHoursBecomeTimesOfDay) {
    using Time = BlueLightStatus::Time;
    EXPECT_EQ(timeOfFractionalHours(20.5), (Time{20, 30}));
    EXPECT_EQ(timeOfFractionalHours(21.0 + 10.0 / 60), (Time{21, 10}));
    EXPECT_EQ(timeOfFractionalHours(23.99), (Time{23, 59}));
    EXPECT_EQ(timeOfFractionalHours(23.999), (Time{0, 0}));
    EXPECT_EQ(timeOfFractionalHours(24.0), (Time{0, 0}));
    EXPECT_EQ(timeOfFractionalHours(-1.0), (Time{23, 0}));
    EXPECT_EQ(timeOfFractionalHours(std::numeric_limits<double>::quiet_NaN()), (Time{0, 0}));
}

// The real gnome-settings-daemon colour plugin, on a private X server, this program's session
// bus and its GSettings keyfile.
TEST(GnomeNightLight, GoesThroughDisabledUntilTomorrowFollowsTheKeysAndOutlivesTheDaemon) {
    if (!std::filesystem::exists(GSD_COLOR_PROGRAM)) GTEST_SKIP() << "gsd-color is missing";
    TempFolder home;
    Child xServer, daemon;
    const std::string display = "DISPLAY=:" + startAndReadLine(xServer, {XVFB_PROGRAM, "-displayfd",
                                                                         "1", "-nolisten", "tcp"});
    // On from an hour ago to an hour from now: the schedule says "on" whatever the time.
    const double from = hoursFromNow(-1), to = hoursFromNow(1);
    writeNightLightScheduleKeys({.enabled = true, .automatic = false, .from = from, .to = to});
    ASSERT_TRUE(startColorDaemon(daemon, display, home.path())) << "gsd-color did not come up";
    const auto keyfile = [] { return readFile(scratch("config/glib-2.0/settings/keyfile")); };
    const std::string keysBefore = keyfile();
    SimSystemLog log;
    auto service = createWithoutKeyboard(log);
    ASSERT_TRUE(service->hasBlueLightClient());
    EXPECT_EQ(service->getBlueLightStatus(),
              (BlueLightStatus{true, BlueLightMode::customSchedule, timeOfFractionalHours(from),
                               timeOfFractionalHours(to)}));

    // Off and back on are run by the program tests; here the restore of a sunset-to-sunrise
    // schedule: "no schedule", then the schedule again, leaving the user's keys as they were.
    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_FALSE(service->getBlueLightStatus().enabled);
    service->setMode(BlueLightMode::byHand);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setMode(BlueLightMode::sunsetToSunrise);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));
    EXPECT_EQ(keyfile(), keysBefore);
    EXPECT_TRUE(log.entries.empty());

    service->setEnabled(false);
    daemon.stop();
    ASSERT_TRUE(waitUntil([] { return !colorServiceUp(); }));
    EXPECT_FALSE(service->getBlueLightStatus().enabled);
    service->setEnabled(true);
    ASSERT_EQ(log.entries.size(), 2u);
    EXPECT_NE(log.entries[1].find("Could not switch Night Light"), std::string::npos);
    ASSERT_TRUE(startColorDaemon(daemon, display, home.path())) << "gsd-color did not come back";
    service->setEnabled(false);
    EXPECT_TRUE(colorProperty("DisabledUntilTomorrow"));
    service->setEnabled(true);
    EXPECT_FALSE(colorProperty("DisabledUntilTomorrow"));

    writeNightLightScheduleKeys({.enabled = true, .automatic = true, .from = 20.5, .to = 6.25});
    EXPECT_EQ(service->getBlueLightStatus().mode, BlueLightMode::sunsetToSunrise);
    EXPECT_EQ(service->getBlueLightStatus().from, BlueLightStatus::Time{});
    writeNightLightScheduleKeys({.enabled = false, .automatic = false, .from = 20.5, .to = 6.25});
    ASSERT_TRUE(waitUntil([] { return !colorProperty("NightLightActive"); }));
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
}

const QString kKWin = QStringLiteral("org.kde.KWin");
const QString kPlasma6Path = QStringLiteral("/org/kde/KWin/NightLight");

/// Unix seconds of today's local `hour`:`minute`.
qint64 todayAt(int hour, int minute) {
    return QDateTime(QDate::currentDate(), QTime(hour, minute)).toSecsSinceEpoch();
}

TEST(KWinNightColor, StatusFromEachGenerationsProperties) {
    const auto timings = [](bool daylight, qint64 previous, qint64 scheduled) {
        return "{\"plasma\": 6, \"mode\": 2, \"daylight\": " +
               std::string(daylight ? "true" : "false") +
               ", \"previous\": " + std::to_string(previous) +
               ", \"scheduled\": " + std::to_string(scheduled) + "}";
    };
    const std::pair<std::string, BlueLightStatus> cases[] = {
        // Plasma 6 at night reads the custom schedule from its transition times; by day the
        // times are the other way round.
        {timings(false, todayAt(21, 15), todayAt(6, 45) + 86400),
         {true, BlueLightMode::customSchedule, {21, 15}, {6, 45}}},
        {timings(true, todayAt(7, 0), todayAt(22, 30)),
         {false, BlueLightMode::customSchedule, {22, 30}, {7, 0}}},
        // Plasma 5: daytime by temperature, and its own mode numbers.
        {R"({"plasma": 5, "mode": 0, "targetTemperature": 6500})",
         {false, BlueLightMode::sunsetToSunrise, {}, {}}},
        {R"({"plasma": 5, "mode": 3, "targetTemperature": 4200})",
         {true, BlueLightMode::alwaysOn, {}, {}}},
        {R"({"plasma": 5, "mode": 1, "running": false})",
         {false, BlueLightMode::sunsetToSunrise, {}, {}}},
    };
    SimSystemLog log;
    for (const auto& [parameters, expected] : cases) {
        MockService kwin("kwin_night_color", kKWin, false, parameters);
        auto service = createWithoutKeyboard(log);
        ASSERT_TRUE(service->hasBlueLightClient());
        EXPECT_EQ(service->getBlueLightStatus(), expected) << parameters;
    }
    EXPECT_TRUE(log.entries.empty());
}

// Inhibiting the real KWin of Plasma 5 is run end to end by the KWin program test.
TEST(KWinNightColor, TakenUpWhenItComesLaterHoldsOneInhibitionAndOutlivesKWin) {
    SimSystemLog log;
    auto service = createWithoutKeyboard(log);
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
    service->setEnabled(false);
    auto kwin = std::make_unique<MockService>("kwin_night_color", kKWin, false,
                                              R"({"plasma": 6, "cookie": 41})");
    EXPECT_TRUE(kwin->calls(kPlasma6Path, "inhibit").empty());
    ASSERT_TRUE(processEventsUntil([&] { return service->getBlueLightStatus().enabled; }));

    service->setEnabled(false);
    service->setEnabled(false);
    service->setMode(BlueLightMode::byHand);
    EXPECT_EQ(kwin->calls(kPlasma6Path, "inhibit").size(), 1u);
    EXPECT_TRUE(kwin->calls(kPlasma6Path, "uninhibit").empty());
    service->setMode(BlueLightMode::sunsetToSunrise);
    service->setEnabled(true);
    const auto given = kwin->calls(kPlasma6Path, "uninhibit");
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].at(0).toUInt(), 41u);
    EXPECT_TRUE(log.entries.empty());

    service->setEnabled(false);
    EXPECT_EQ(kwin->calls(kPlasma6Path, "inhibit").size(), 2u);
    kwin->stop();
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
    service->setEnabled(true);
    EXPECT_EQ(log.entries.size(), 2u);
    // The cookie of the KWin that went away is not handed to the next one.
    kwin = std::make_unique<MockService>("kwin_night_color", kKWin, false,
                                         R"({"plasma": 6, "cookie": 9})");
    service->setEnabled(false);
    service->setEnabled(true);
    ASSERT_EQ(kwin->calls(kPlasma6Path, "inhibit").size(), 1u);
    EXPECT_EQ(kwin->calls(kPlasma6Path, "uninhibit"), std::vector<QVariantList>{{9u}});
}

}  // namespace
}  // namespace marzipel::dbustest
