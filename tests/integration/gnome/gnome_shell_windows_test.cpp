// Marzipel's GNOME source against a real headless GNOME Shell running Marzipel's extension: the
// test's own Qt windows are the applications.
#include "platform/linux/gnome_shell_windows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include "integration/gnome/gnome_shell_session.h"
#include "platform/linux/reported_windows.h"
#include "platform/sim/sim_basics.h"
#include "support/event_loop_wait.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

using dbustest::gnomeShell;
using dbustest::kListedApp;
using dbustest::MockService;

/// An app id the shell has no desktop entry for: it names such windows "window:N".
constexpr char kUnlistedApp[] = "marzipel-test-unlisted";

/// A connection that is not the shell's sends two reports of a full-screen window.
constexpr char kIntruder[] = R"(
import dbus, dbus.lowlevel
bus = dbus.SessionBus()
for _ in range(2):
    report = dbus.lowlevel.SignalMessage(
        '/com/orsavelt/Marzipel/Shell', 'com.orsavelt.Marzipel.Shell', 'Changed')
    report.append(dbus.Array([(1, 'intruder', 'intruder', True)], signature='(issb)'),
                  dbus.Array([], signature='(iss)'))
    bus.send_message(report)
bus.flush()
)";

class GnomeShellWindowsTest : public ::testing::Test {
protected:
    void SetUp() override {
        notifications_ = std::make_unique<MockService>("notification_daemon",
                                                       "org.freedesktop.Notifications", false);
        source_ = std::make_unique<GnomeShellWindows>(windows_, log_);
    }
    void TearDown() override {
        source_.reset();
        ASSERT_TRUE(gnomeShell().switchExtension(true));
    }

    std::optional<std::int32_t> frontmost() const {
        const auto app = windows_.frontmostApplication();
        return app ? std::optional(app->processId) : std::nullopt;
    }
    std::optional<std::string> runningId(pid_t processId) const {
        const auto app = windows_.runningApplication(processId);
        return app ? app->bundleIdentifier : std::nullopt;
    }
    std::size_t logged(const std::string& text) const {
        return std::ranges::count_if(log_.entries, [&](const std::string& entry) {
            return entry.find(text) != std::string::npos;
        });
    }
    std::size_t notified() const {
        return notifications_->calls("/org/freedesktop/Notifications", "Notify").size();
    }

    std::unique_ptr<MockService> notifications_;
    FakeDesktopEntries entries_;
    ReportedWindows windows_{entries_};
    SimSystemLog log_;
    std::unique_ptr<GnomeShellWindows> source_;
};

TEST_F(GnomeShellWindowsTest, FocusFullScreenAndClosingWindowsAreSeenAndOthersReportsRefused) {
    Child player = gnomeShell().startWindow(kListedApp);
    ASSERT_TRUE(processEventsUntil([&] { return frontmost() == player.pid(); }));
    EXPECT_EQ(windows_.frontmostApplication()->bundleIdentifier, kListedApp);
    EXPECT_TRUE(windows_.isOnActiveSpace());

    Child intruder({DBUSMOCK_PYTHON, "-c", kIntruder});
    ASSERT_TRUE(waitUntil([&] { return !intruder.running(); }));
    ASSERT_TRUE(processEventsUntil([&] { return logged("Refused a window report from :") > 0; }));
    EXPECT_EQ(frontmost(), player.pid());
    EXPECT_TRUE(windows_.isOnActiveSpace());

    EXPECT_TRUE(signalUntil(player.pid(), SIGUSR1, [&] { return !windows_.isOnActiveSpace(); }));
    EXPECT_TRUE(signalUntil(player.pid(), SIGUSR2, [&] { return windows_.isOnActiveSpace(); }));

    Child other = gnomeShell().startWindow(kUnlistedApp);
    ASSERT_TRUE(processEventsUntil([&] { return frontmost() == other.pid(); }));
    EXPECT_EQ(runningId(other.pid()), kUnlistedApp);
    EXPECT_EQ(runningId(player.pid()), kListedApp);

    ASSERT_TRUE(signalUntil(other.pid(), SIGUSR1, [&] { return !windows_.isOnActiveSpace(); }));
    other.stop();
    EXPECT_TRUE(processEventsUntil(
        [&] { return windows_.isOnActiveSpace() && frontmost() != other.pid(); }));
    EXPECT_TRUE(processEventsUntil([&] { return !runningId(other.pid()); }));
    EXPECT_EQ(log_.entries.size(), 1U) << "more than the intruder's report was refused";
}

TEST_F(GnomeShellWindowsTest, SwitchedOffOrUnknownIsSaidOnceAndSwitchedOnAgainAtTheNextStart) {
    Child player = gnomeShell().startWindow(kListedApp);
    ASSERT_TRUE(processEventsUntil([&] { return frontmost() == player.pid(); }));

    ASSERT_TRUE(gnomeShell().switchExtension(false));
    EXPECT_TRUE(
        processEventsUntil([&] { return !frontmost() && windows_.runningApplications().empty(); }));
    kill(player.pid(), SIGUSR1);
    EXPECT_TRUE(processEventsUntil([&] { return notified() == 1; }));
    EXPECT_EQ(logged("switched off"), 1U);
    EXPECT_TRUE(windows_.isOnActiveSpace());

    source_ = std::make_unique<GnomeShellWindows>(windows_, log_);
    EXPECT_TRUE(processEventsUntil([&] { return gnomeShell().extensionState() == 1; }));
    EXPECT_TRUE(processEventsUntil(
        [&] { return frontmost() == player.pid() && !windows_.isOnActiveSpace(); }));

    // An extension the shell does not know yet asks for a new login.
    SimSystemLog log;
    GnomeShellWindows unknown(windows_, log, QDBusConnection::sessionBus(),
                              QStringLiteral("unknown@orsavelt.com"));
    EXPECT_TRUE(processEventsUntil([&] { return notified() == 2; }));
    ASSERT_EQ(log.entries.size(), 1U);
    EXPECT_NE(log.entries.front().find("log out and in once"), std::string::npos);
}

}  // namespace
}  // namespace marzipel
