// Our KWin script inside a real headless KWin, reporting to Marzipel's bus name in this process;
// the test's own windows come and go, go full screen and take focus.
#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <csignal>
#include <memory>

#include "integration/wayland/kwin_session.h"
#include "platform/linux/kwin_window_source.h"
#include "platform/linux/marzipel_bus_service.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

using waylandtest::KWinSession;

constexpr char kPlayer[] = "marzipel-test-player";
constexpr char kOther[] = "marzipel-test-other";

/// Focuses the window of process `pid` from a script of the test's own.
std::string focusScript(pid_t pid) {
    return "const windows = typeof workspace.windowList === 'function' ? workspace.windowList() "
           ": workspace.clientList();\n"
           "for (const w of windows) if (w.pid === " +
           std::to_string(pid) +
           ") { if ('activeWindow' in workspace) workspace.activeWindow = w; else "
           "workspace.activeClient = w; }\n";
}

/// A report sent by KWin itself, from a script of the test's own.
std::string reportScript(const std::string& method, const std::string& argument) {
    return "callDBus('com.orsavelt.Marzipel', '/com/orsavelt/Marzipel', 'com.orsavelt.Marzipel', "
           "'" +
           method + "', " + argument + ");\n";
}

class KWinWindowSourceTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { kwin_ = std::make_unique<KWinSession>(); }
    static void TearDownTestSuite() { kwin_.reset(); }

    void SetUp() override {
        kwin_->ensureRunning();
        entries_.add(kPlayer, "Test Player");
        ASSERT_EQ(service_.claim(), MarzipelBusService::Claim::owned);
        windows_.setActiveSpaceChangedHandler([this] { posts_.push_back(windows_.active()); });
        windows_.setFullScreenLikelyHandler([this] { ++toldFullScreen_; });
        source_ = std::make_unique<KWinWindowSource>(windows_, service_, KWIN_SCRIPT, log_);
        // The script's first report: nothing has focus yet.
        ASSERT_TRUE(processEventsUntil([this] { return !posts_.empty(); }))
            << (log_.entries.empty() ? "" : log_.entries.front());
        seen_ = posts_.size();
    }

    /// Waits for a post of the focused window of process `pid`, or of none for 0, in that
    /// full-screen state, later than the one waited for last. Posts between are passed over:
    /// focus moving between windows may pass through none.
    bool posted(pid_t pid, bool fullScreen = false) {
        return processEventsUntil([&] {
            while (seen_ < posts_.size()) {
                const std::optional<ReportedWindow>& post = posts_[seen_++];
                if (pid == 0
                        ? !post
                        : post && post->identity.processId == pid && post->fullScreen == fullScreen)
                    return true;
            }
            return false;
        });
    }

    std::vector<std::int32_t> runningProcesses() const {
        std::vector<std::int32_t> pids;
        for (const RunningApplication& app : windows_.runningApplications())
            pids.push_back(app.processId);
        return pids;
    }

    static inline std::unique_ptr<KWinSession> kwin_;
    FakeDesktopEntries entries_;
    SimSystemLog log_;
    MarzipelBusService service_{log_};
    ReportedWindows windows_{entries_};
    std::vector<std::optional<ReportedWindow>> posts_;
    std::size_t seen_ = 0;
    int toldFullScreen_ = 0;
    std::unique_ptr<KWinWindowSource> source_;
};

TEST_F(KWinWindowSourceTest, EveryChangeOfFocusAndFullScreenIsPostedUntilKWinLeaves) {
    // Another script unloaded while a later one stays: ours is given the number of the one
    // that stays, and still runs.
    source_.reset();
    const std::string first = kwin_->runScript("// stays loaded\n", true);
    const std::string second = kwin_->runScript("// stays loaded\n", true);
    kwin_->unloadScript(first);
    source_ = std::make_unique<KWinWindowSource>(windows_, service_, KWIN_SCRIPT, log_);
    ASSERT_TRUE(posted(0));
    kwin_->unloadScript(second);

    Child player = kwin_->openWindow(kPlayer);
    ASSERT_TRUE(posted(player.pid()));
    EXPECT_EQ(windows_.active()->identity.applicationId, kPlayer);
    ASSERT_EQ(windows_.frontmostApplication()->bundleIdentifier, kPlayer);
    ASSERT_EQ(windows_.frontmostApplication()->localizedName, "Test Player");

    Child other = kwin_->openWindow(kOther);
    ASSERT_TRUE(posted(other.pid()));
    EXPECT_TRUE(processEventsUntil([&] {
        return runningProcesses() == std::vector<std::int32_t>{player.pid(), other.pid()};
    }));

    kill(other.pid(), SIGUSR1);
    ASSERT_TRUE(posted(other.pid(), true));
    EXPECT_FALSE(windows_.isOnActiveSpace());
    EXPECT_EQ(toldFullScreen_, 1);
    kill(other.pid(), SIGUSR2);
    EXPECT_TRUE(posted(other.pid(), false));
    kill(other.pid(), SIGUSR1);
    EXPECT_TRUE(posted(other.pid(), true));

    kwin_->runScript(focusScript(player.pid()));
    EXPECT_TRUE(posted(player.pid()));
    EXPECT_TRUE(windows_.isOnActiveSpace());
    kwin_->runScript(focusScript(other.pid()));
    EXPECT_TRUE(posted(other.pid(), true));
    // A repeat of the same report is posted too, but is no news to read ahead for.
    const std::string repeat = reportScript(
        "ReportActiveWindow", "{pid: " + std::to_string(other.pid()) + ", fullScreen: true}");
    kwin_->runScript(repeat);
    EXPECT_TRUE(posted(other.pid(), true));
    const int told = toldFullScreen_;
    kwin_->runScript(repeat);
    EXPECT_TRUE(posted(other.pid(), true));
    EXPECT_EQ(toldFullScreen_, told);

    // The full-screen window closes: focus goes back to the player.
    other.stop();
    EXPECT_TRUE(posted(player.pid()));
    EXPECT_TRUE(processEventsUntil(
        [&] { return runningProcesses() == std::vector<std::int32_t>{player.pid()}; }));
    EXPECT_TRUE(log_.entries.empty()) << log_.entries.front();

    // KWin leaving leaves no focus, and a KWin that returns gets the script again.
    Child watching = kwin_->openWindow(kPlayer);
    kill(watching.pid(), SIGUSR1);
    ASSERT_TRUE(posted(watching.pid(), true));
    kwin_->kill();
    EXPECT_TRUE(posted(0));
    EXPECT_TRUE(windows_.isOnActiveSpace());
    EXPECT_TRUE(windows_.runningApplications().empty());
    ASSERT_EQ(log_.entries.size(), 1u);
    EXPECT_NE(log_.entries.front().find("KWin left the session bus"), std::string::npos);

    kwin_->ensureRunning();
    Child again = kwin_->openWindow(kPlayer);
    ASSERT_TRUE(processEventsUntil(
        [&] { return windows_.active() && windows_.active()->identity.processId == again.pid(); }));
}

TEST_F(KWinWindowSourceTest, ReportsFromOthersAndMalformedOnesAreRefusedWithOneLineEach) {
    QDBusMessage call =
        QDBusMessage::createMethodCall("com.orsavelt.Marzipel", "/com/orsavelt/Marzipel",
                                       "com.orsavelt.Marzipel", "ReportActiveWindow");
    call << QVariantMap{{"pid", 1}, {"fullScreen", true}};
    // Our own name, on another connection than the one that serves it.
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "other");
    QDBusPendingCall pending = other.asyncCall(call);
    ASSERT_TRUE(processEventsUntil([&] { return pending.isFinished(); }));
    EXPECT_EQ(pending.error().name().toStdString(), "org.freedesktop.DBus.Error.AccessDenied");
    QDBusConnection::disconnectFromBus("other");

    const std::vector<std::pair<std::string, std::string>> malformed{
        {"ReportActiveWindow", "'text'"},
        {"ReportActiveWindow", "{fullScreen: true}"},
        {"ReportActiveWindow", "{pid: 0}"},
        {"ReportActiveWindow", "{pid: -4}"},
        {"ReportActiveWindow", "{pid: 4194305}"},
        {"ReportActiveWindow", "{pid: 1.5}"},
        {"ReportActiveWindow", "{pid: '12'}"},
        {"ReportActiveWindow", "{pid: 1, fullScreen: 'yes'}"},
        {"ReportActiveWindow", "{pid: 1, resourceClass: 'x'.repeat(256)}"},
        {"ReportActiveWindow", "{pid: 1, desktopFileName: {a: 1}}"},
        {"ReportActiveWindow", "[{pid: 1}]"},
        {"ReportWindows", "[1]"},
        {"ReportWindows", "{pid: 1}"},
        {"ReportWindows", "[{pid: 1}, {pid: 1, resourceName: 7}]"},
        {"ReportWindows", "Array(1025).fill({pid: 1})"},
        {"OpenWindows", "[]"},
    };
    std::string script;
    for (const auto& [method, argument] : malformed) script += reportScript(method, argument);
    // Still listening: a sound report after them is taken.
    script += reportScript("ReportActiveWindow", "{pid: 1, fullScreen: true}");
    kwin_->runScript(script);
    ASSERT_TRUE(posted(1, true));
    EXPECT_EQ(posts_.size(), 2u) << "a refused report was posted";
    ASSERT_EQ(log_.entries.size(), 1 + malformed.size());
    EXPECT_NE(log_.entries.front().find("only org.kde.KWin reports windows"), std::string::npos);
    EXPECT_NE(log_.entries[3].find("pid is out of range"), std::string::npos) << log_.entries[3];
}

}  // namespace
}  // namespace marzipel
