#include <gtest/gtest.h>

#include <QDateTime>
#include <QTime>

#include "mock_service.h"
#include "support/event_loop_wait.h"

namespace marzipel::dbustest {
namespace {

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
        {timings(false, todayAt(21, 15), todayAt(6, 45) + 86400), {true, 2, {21, 15}, {6, 45}}},
        {timings(true, todayAt(7, 0), todayAt(22, 30)), {false, 2, {22, 30}, {7, 0}}},
        // Plasma 5: daytime by temperature, and its own mode numbers.
        {R"({"plasma": 5, "mode": 0, "targetTemperature": 6500})", {false, 1, {}, {}}},
        {R"({"plasma": 5, "mode": 3, "targetTemperature": 4200})", {true, 0, {}, {}}},
        {R"({"plasma": 5, "mode": 1, "running": false})", {false, 1, {}, {}}},
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
    service->setMode(0);
    EXPECT_EQ(kwin->calls(kPlasma6Path, "inhibit").size(), 1u);
    EXPECT_TRUE(kwin->calls(kPlasma6Path, "uninhibit").empty());
    service->setMode(1);
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
