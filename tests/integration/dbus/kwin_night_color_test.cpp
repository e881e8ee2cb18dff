#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QTime>

#include "mock_service.h"
#include "test_world.h"

namespace marzipel::dbustest {
namespace {

const QString kKWin = QStringLiteral("org.kde.KWin");
const QString kPlasma6Path = QStringLiteral("/org/kde/KWin/NightLight");
const QString kPlasma5Path = QStringLiteral("/ColorCorrect");

/// Unix seconds of today's local `hour`:`minute`.
qint64 todayAt(int hour, int minute) {
    return QDateTime(QDate::currentDate(), QTime(hour, minute)).toSecsSinceEpoch();
}

TEST(NoBlueLightService, ReadsZeroSendsNothingAndTakesUpAServiceThatComesLater) {
    RecordingLog log;
    auto service = createWithoutKeyboard(log);
    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
    service->setEnabled(false);

    MockService kwin("kwin_night_color", kKWin, false, R"({"plasma": 6, "cookie": 7})");
    EXPECT_TRUE(kwin.calls(kPlasma6Path, "inhibit").empty());
    ASSERT_TRUE(waitUntil([&] {
        QCoreApplication::processEvents();
        return service->getBlueLightStatus().enabled;
    }));
    service->setEnabled(false);
    EXPECT_EQ(kwin.calls(kPlasma6Path, "inhibit").size(), 1u);
    EXPECT_TRUE(log.lines.empty());
}

TEST(KWinNightColor, Plasma6NightOfTimingsReadsAsEnabledCustomSchedule) {
    MockService kwin("kwin_night_color", kKWin, false,
                     "{\"plasma\": 6, \"mode\": 2, \"daylight\": false, \"previous\": " +
                         std::to_string(todayAt(21, 15)) +
                         ", \"scheduled\": " + std::to_string(todayAt(6, 45) + 86400) + "}");
    RecordingLog log;
    auto service = createWithoutKeyboard(log);
    ASSERT_TRUE(service->hasBlueLightClient());
    EXPECT_EQ(service->getBlueLightStatus(),
              (BlueLightStatus{.enabled = true, .mode = 2, .from = {21, 15}, .to = {6, 45}}));
}

TEST(KWinNightColor, Plasma6DayOfTimingsReadsAsOffWithTheScheduleTurnedAround) {
    MockService kwin("kwin_night_color", kKWin, false,
                     "{\"plasma\": 6, \"mode\": 2, \"daylight\": true, \"previous\": " +
                         std::to_string(todayAt(7, 0)) +
                         ", \"scheduled\": " + std::to_string(todayAt(22, 30)) + "}");
    RecordingLog log;
    EXPECT_EQ(createWithoutKeyboard(log)->getBlueLightStatus(),
              (BlueLightStatus{.enabled = false, .mode = 2, .from = {22, 30}, .to = {7, 0}}));
}

TEST(KWinNightColor, Plasma5ModesAndDaytimeByTemperature) {
    RecordingLog log;
    {
        MockService kwin("kwin_night_color", kKWin, false,
                         R"({"plasma": 5, "mode": 0, "targetTemperature": 6500})");
        EXPECT_EQ(createWithoutKeyboard(log)->getBlueLightStatus(),
                  (BlueLightStatus{.enabled = false, .mode = 1, .from = {}, .to = {}}));
    }
    {
        MockService kwin("kwin_night_color", kKWin, false,
                         R"({"plasma": 5, "mode": 3, "targetTemperature": 4200})");
        EXPECT_EQ(createWithoutKeyboard(log)->getBlueLightStatus(),
                  (BlueLightStatus{.enabled = true, .mode = 0, .from = {}, .to = {}}));
    }
    {
        MockService kwin("kwin_night_color", kKWin, false,
                         R"({"plasma": 5, "mode": 1, "running": false})");
        EXPECT_EQ(createWithoutKeyboard(log)->getBlueLightStatus(),
                  (BlueLightStatus{.enabled = false, .mode = 1, .from = {}, .to = {}}));
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST(KWinNightColor, HoldsOneInhibitionAndGivesBackItsCookie) {
    MockService kwin("kwin_night_color", kKWin, false, R"({"plasma": 6, "cookie": 41})");
    RecordingLog log;
    auto service = createWithoutKeyboard(log);

    service->setEnabled(false);
    service->setEnabled(false);
    service->setMode(0);
    EXPECT_EQ(kwin.calls(kPlasma6Path, "inhibit").size(), 1u);
    EXPECT_TRUE(kwin.calls(kPlasma6Path, "uninhibit").empty());

    service->setMode(1);
    service->setEnabled(true);
    const auto given = kwin.calls(kPlasma6Path, "uninhibit");
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].at(0).toUInt(), 41u);

    service->setEnabled(false);
    service->setEnabled(true);
    EXPECT_EQ(kwin.calls(kPlasma6Path, "inhibit").size(), 2u);
    EXPECT_EQ(kwin.calls(kPlasma6Path, "uninhibit").size(), 2u);
    EXPECT_TRUE(log.lines.empty());
}

TEST(KWinNightColor, Plasma5VanishingWhileInhibitedIsSurvived) {
    auto kwin = std::make_unique<MockService>("kwin_night_color", kKWin, false,
                                              R"({"plasma": 5, "cookie": 3})");
    RecordingLog log;
    auto service = createWithoutKeyboard(log);
    service->setEnabled(false);
    ASSERT_EQ(kwin->calls(kPlasma5Path, "inhibit").size(), 1u);
    kwin->stop();

    EXPECT_EQ(service->getBlueLightStatus(), BlueLightStatus{});
    service->setEnabled(true);
    EXPECT_EQ(log.lines.size(), 2u);

    kwin = std::make_unique<MockService>("kwin_night_color", kKWin, false,
                                         R"({"plasma": 5, "cookie": 9})");
    service->setEnabled(false);
    service->setEnabled(true);
    const auto given = kwin->calls(kPlasma5Path, "uninhibit");
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].at(0).toUInt(), 9u);
}

}  // namespace
}  // namespace marzipel::dbustest
