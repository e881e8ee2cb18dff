#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>

#include "mock_service.h"
#include "platform/linux/linux_power_assertions.h"

namespace marzipel::dbustest {
namespace {

/// The processes of the reply, each once per display-sleep assertion it holds.
std::multiset<std::int32_t> holders(const PowerAssertionsReply& reply) {
    std::multiset<std::int32_t> result;
    if (!reply.table) return result;
    for (const auto& [pid, assertions] : *reply.table) {
        for (const PlistValue& record : *assertions.as<PlistArray>()) {
            const auto& fields = *record.as<PlistDictionary>();
            if (*fields.at("AssertionTrueType").as<std::string>() ==
                "PreventUserIdleDisplaySleep") {
                result.insert(pid);
            }
        }
    }
    return result;
}

/// Takes a logind inhibitor lock, held while the returned descriptor lives.
QDBusUnixFileDescriptor inhibit(const QString& what, const QString& who) {
    QDBusMessage message =
        QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager", "Inhibit");
    message.setArguments({what, who, "testing", "block"});
    const QDBusMessage reply = QDBusConnection::systemBus().call(message, QDBus::Block, 5000);
    return reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
}

TEST(LinuxPowerAssertions, NothingOnTheBusIsAFailedQuery) {
    const PowerAssertionsReply reply = LinuxPowerAssertions().assertionsByProcess();
    EXPECT_NE(reply.result, 0);
    EXPECT_FALSE(reply.table);
}

TEST(LinuxPowerAssertions, LogindIdleInhibitorsCountOthersDoNot) {
    MockService logind("logind", "org.freedesktop.login1", true);
    LinuxPowerAssertions assertions;
    PowerAssertionsReply reply = assertions.assertionsByProcess();
    ASSERT_EQ(reply.result, 0);
    EXPECT_TRUE(holders(reply).empty());

    const auto video = inhibit("sleep:idle", "Videos");
    const auto update = inhibit("sleep:shutdown", "Updater");
    ASSERT_TRUE(video.isValid() && update.isValid());
    reply = assertions.assertionsByProcess();
    // The stock mock gives every inhibitor the process id 123456.
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{123456}));
}

TEST(LinuxPowerAssertions, PlayingMprisPlayerCounts) {
    MockService player("mpris_player", "org.mpris.MediaPlayer2.marzipeltest", false,
                       R"({"status": "Playing"})");
    const PowerAssertionsReply reply = LinuxPowerAssertions().assertionsByProcess();
    ASSERT_EQ(reply.result, 0);
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{player.pid()}));
}

TEST(LinuxPowerAssertions, GnomeIdleInhibitorIsFoundThroughItsAppId) {
    MockService player("mpris_player", "org.mpris.MediaPlayer2.marzipeltest", false,
                       R"({"status": "Paused", "also_own": ["org.example.Player"]})");
    MockService session("gnome_session_manager", "org.gnome.SessionManager", false,
                        R"({"inhibitors": [
                            {"flags": 8, "app_id": "org.example.Player.desktop"},
                            {"flags": 4, "app_id": "org.example.Player"},
                            {"flags": 12, "app_id": "org.example.Gone"}]})");
    const PowerAssertionsReply reply = LinuxPowerAssertions().assertionsByProcess();
    ASSERT_EQ(reply.result, 0);
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{player.pid()}));
}

}  // namespace
}  // namespace marzipel::dbustest
