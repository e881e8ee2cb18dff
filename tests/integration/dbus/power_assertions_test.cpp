#include <gtest/gtest.h>
#include <sys/wait.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <filesystem>
#include <optional>

#include "mock_service.h"
#include "platform/linux/linux_power_assertions.h"
#include "support/temp_folder.h"

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
    // As the program asks when a window may have gone full screen: the first answers early.
    LinuxPowerAssertions assertions;
    assertions.readAhead();
    const PowerAssertionsReply reply = assertions.assertionsByProcess();
    EXPECT_EQ(session.calls("/org/gnome/SessionManager", "GetInhibitors").size(), 1u)
        << "the answer read ahead was used";
    ASSERT_EQ(reply.result, 0);
    EXPECT_EQ(holders(reply), (std::multiset<std::int32_t>{player.pid()}));
}

/// Real mpv with the mpv-mpris plugin, playing a clip made for the test, on the private session
/// bus: the players this adapter is meant for, rather than a mock of one.
class LinuxPowerAssertionsWithMpv : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(MPV_PROGRAM)) {
            GTEST_SKIP() << "mpv, mpv-mpris or ffmpeg is not installed";
        }
        const std::string clip = folder_ / "clip.mp4";
        Child encoder({FFMPEG_PROGRAM, "-nostdin", "-loglevel", "error", "-y", "-f", "lavfi", "-i",
                       "testsrc=duration=30:size=64x48:rate=10", "-pix_fmt", "yuv420p", clip});
        ASSERT_TRUE(waitUntil([&] { return !encoder.running(); }, 20s)) << "ffmpeg did not finish";
        ASSERT_TRUE(exitedCleanly(encoder)) << "ffmpeg failed to make " << clip;

        mpv_ = Child({MPV_PROGRAM, "--no-config", "--no-terminal", "--vo=null", "--ao=null",
                      "--loop=inf", std::string("--script=") + MPV_MPRIS_PLUGIN, clip});
        ASSERT_TRUE(waitUntil([&] { return (name_ = mpvName()).has_value() || !mpv_.running(); }))
            << "mpv did not take an org.mpris.MediaPlayer2.mpv name";
        ASSERT_TRUE(name_) << "mpv ended before it joined the bus";
    }

    void TearDown() override {
        mpv_.stop();
        // Later tests expect no player on the shared bus.
        if (name_) {
            EXPECT_TRUE(waitUntil([&] { return !owned(*name_); }));
        }
    }

    QDBusConnection bus() const { return QDBusConnection::sessionBus(); }

    bool owned(const QString& name) const {
        return bus().interface()->isServiceRegistered(name).value();
    }

    /// The MPRIS name that mpv's own process holds; mpv-mpris adds an instance suffix when
    /// another mpv has the plain one.
    std::optional<QString> mpvName() const {
        for (const QString& name : bus().interface()->registeredServiceNames().value()) {
            if (name.startsWith(QLatin1String("org.mpris.MediaPlayer2.mpv")) &&
                static_cast<pid_t>(bus().interface()->servicePid(name).value()) == mpv_.pid()) {
                return name;
            }
        }
        return std::nullopt;
    }

    QDBusMessage player(const QString& interface, const QString& method,
                        const QVariantList& arguments = {}) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(*name_, "/org/mpris/MediaPlayer2", interface, method);
        message.setArguments(arguments);
        return bus().call(message, QDBus::Block, 5000);
    }

    QString playbackStatus() const {
        const QDBusMessage reply =
            player("org.freedesktop.DBus.Properties", "Get",
                   {QStringLiteral("org.mpris.MediaPlayer2.Player"), "PlaybackStatus"});
        if (reply.type() != QDBusMessage::ReplyMessage) return {};
        return reply.arguments().value(0).value<QDBusVariant>().variant().toString();
    }

    static bool exitedCleanly(const Child& child) {
        siginfo_t info{};
        return waitid(P_PID, child.pid(), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == child.pid() && info.si_code == CLD_EXITED && info.si_status == 0;
    }

    TempFolder folder_;
    Child mpv_;
    std::optional<QString> name_;
};

TEST_F(LinuxPowerAssertionsWithMpv, HoldsTheDisplayWhilePlayingNotOncePaused) {
    ASSERT_TRUE(waitUntil([&] { return playbackStatus() == QLatin1String("Playing"); }))
        << "mpv reports " << playbackStatus().toStdString();
    LinuxPowerAssertions assertions;
    PowerAssertionsReply reply = assertions.assertionsByProcess();
    ASSERT_EQ(reply.result, 0);
    EXPECT_EQ(holders(reply).count(mpv_.pid()), 1u);

    const QDBusMessage paused = player("org.mpris.MediaPlayer2.Player", "Pause");
    ASSERT_EQ(paused.type(), QDBusMessage::ReplyMessage) << paused.errorMessage().toStdString();
    ASSERT_TRUE(waitUntil([&] { return playbackStatus() == QLatin1String("Paused"); }))
        << "mpv reports " << playbackStatus().toStdString();
    reply = assertions.assertionsByProcess();
    // A paused player still answers, so the query succeeds with nothing held.
    ASSERT_EQ(reply.result, 0);
    EXPECT_EQ(holders(reply).count(mpv_.pid()), 0u);
}

}  // namespace
}  // namespace marzipel::dbustest
