#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusUnixFileDescriptor>
#include <filesystem>
#include <set>

#include "mock_service.h"
#include "platform/linux/dbus/dbus_call.h"
#include "platform/linux/playback/linux_power_assertions.h"

namespace marzipel::dbustest {
namespace {

/// The processes of the reply, each once per display-sleep assertion it holds.
std::multiset<std::int32_t> holders(const Result<AssertionsByProcess>& reply) {
    std::multiset<std::int32_t> result;
    if (!reply.ok()) return result;
    for (const auto& [pid, assertions] : reply.value()) {
        for (const PlistValue& record : *assertions.as<PlistArray>()) {
            const auto& fields = *record.as<PlistDictionary>();
            if (*fields.at("AssertionTrueType").as<std::string>() == "PreventUserIdleDisplaySleep")
                result.insert(pid);
        }
    }
    return result;
}

/// Takes a logind inhibitor lock, held while the returned descriptor lives.
QDBusUnixFileDescriptor inhibit(const QString& what, const QString& who) {
    const dbus::Address logind{"org.freedesktop.login1", "/org/freedesktop/login1",
                               "org.freedesktop.login1.Manager"};
    const QDBusMessage reply = dbus::call(QDBusConnection::systemBus(), logind, "Inhibit",
                                          {what, who, "testing", "block"});
    return reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
}

TEST(LinuxPowerAssertions, IdleInhibitorsOfLogindAndGnomeCountAndNeitherIsAFailedQuery) {
    LinuxPowerAssertions assertions;
    Result<AssertionsByProcess> reply = assertions.assertionsByProcess();
    EXPECT_TRUE(reply.status().message().starts_with("logind: org.freedesktop.DBus.Error."))
        << reply.status().message();

    MockService logind("logind", "org.freedesktop.login1", true);
    reply = assertions.assertionsByProcess();
    ASSERT_TRUE(reply.ok());
    EXPECT_TRUE(holders(reply).empty());
    const auto video = inhibit("sleep:idle", "Videos");
    const auto update = inhibit("sleep:shutdown", "Updater");
    ASSERT_TRUE(video.isValid() && update.isValid());
    // The stock mock gives every inhibitor the process id 123456.
    EXPECT_EQ(holders(assertions.assertionsByProcess()), (std::multiset<std::int32_t>{123456}));

    MockService session("gnome_session_manager", "org.gnome.SessionManager", false,
                        R"({"also_own": ["org.example.Player"], "inhibitors": [
                            {"flags": 8, "app_id": "org.example.Player.desktop"},
                            {"flags": 4, "app_id": "org.example.Player"},
                            {"flags": 12, "app_id": "org.example.Gone"}]})");
    // As the program asks when a window may have gone full screen: the first answers early.
    assertions.readAhead();
    reply = assertions.assertionsByProcess();
    EXPECT_EQ(session.calls("/org/gnome/SessionManager", "GetInhibitors").size(), 1u)
        << "the answer read ahead was used";
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{123456, session.pid()}));
}

// Real mpv with the mpv-mpris plugin on the private session bus: the players this adapter is
// meant for, rather than a mock of one.
TEST(LinuxPowerAssertions, PlayingMpvHoldsTheDisplayAndPausedDoesNot) {
    if (!std::filesystem::exists(MPV_PROGRAM)) GTEST_SKIP() << "mpv or mpv-mpris is missing";
    Child mpv({MPV_PROGRAM, "--no-config", "--no-terminal", "--vo=null", "--ao=null",
               std::string("--script=") + MPV_MPRIS_PLUGIN, "av://lavfi:testsrc=size=64x48"});
    // mpv-mpris 1.0 and later add an instance suffix to the name, earlier ones do not.
    const QDBusConnection bus = QDBusConnection::sessionBus();
    QString name;
    ASSERT_TRUE(waitUntil([&] {
        for (const QString& owned : bus.interface()->registeredServiceNames().value())
            if (owned.startsWith("org.mpris.MediaPlayer2.mpv")) name = owned;
        return !name.isEmpty();
    }));
    const dbus::Address player{name, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player"};
    const auto status = [&] {
        return dbus::property(bus, player, "PlaybackStatus").valueOr(QVariant()).toString();
    };
    ASSERT_TRUE(waitUntil([&] { return status() == "Playing"; })) << status().toStdString();
    LinuxPowerAssertions assertions;
    Result<AssertionsByProcess> reply = assertions.assertionsByProcess();
    ASSERT_TRUE(reply.ok());
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{mpv.pid()}));

    ASSERT_EQ(dbus::call(bus, player, "Pause").type(), QDBusMessage::ReplyMessage);
    ASSERT_TRUE(waitUntil([&] { return status() == "Paused"; })) << status().toStdString();
    reply = assertions.assertionsByProcess();
    // A paused player still answers, so the query succeeds with nothing held.
    ASSERT_TRUE(reply.ok());
    EXPECT_TRUE(holders(reply).empty());
    mpv.stop();
    EXPECT_TRUE(waitUntil([&] { return !dbus::hasOwner(bus, player.service); }));
}

}  // namespace
}  // namespace marzipel::dbustest
