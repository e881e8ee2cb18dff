// Marzipel's GNOME source against a real headless GNOME Shell running Marzipel's extension: the
// test's own Qt windows are the applications, and the test's connection holds Marzipel's name,
// the only one the extension reports to.
#include "platform/linux/windows/gnome/gnome_shell_windows.h"

#include <gtest/gtest.h>

#include <csignal>

#include "integration/gnome/gnome_shell_session.h"
#include "integration/program/marzipel_run.h"
#include "integration/wayland/reported_windows_wait.h"
#include "platform/linux/dbus/dbus_call.h"
#include "platform/sim/sim_basics.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

using dbustest::gnomeShell;
using programtest::kPlayer;

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

const QString kMarzipel = QStringLiteral("com.orsavelt.Marzipel");

class GnomeShellWindowsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QDBusConnection::sessionBus().registerService(kMarzipel)); }
    // The program's test after this one needs the name free, the extension on and the user's
    // keys settled.
    void TearDown() override {
        QDBusConnection::sessionBus().unregisterService(kMarzipel);
        ASSERT_TRUE(gnomeShell().switchExtension(true));
    }
};

TEST_F(GnomeShellWindowsTest, FollowsTheShellAloneAndSaysOnceWhenItsExtensionIsOffOrUnknown) {
    dbustest::MockService notifications("notification_daemon", "org.freedesktop.Notifications",
                                        false);
    const auto notified = [&] {
        return notifications.calls("/org/freedesktop/Notifications", "Notify").size();
    };
    FakeDesktopEntries entries;
    ReportedWindows windows{entries};
    SimSystemLog log;
    int posts = 0;
    windows.setActiveSpaceChangedHandler([&] { ++posts; });
    auto source = std::make_unique<GnomeShellWindows>(windows, log);

    Child player = gnomeShell().startWindow(kPlayer);
    ASSERT_TRUE(waitForFocus(windows, player.pid()));
    Child intruder({DBUSMOCK_PYTHON, "-c", kIntruder});
    ASSERT_TRUE(waitUntil([&] { return !intruder.running(); }));
    ASSERT_TRUE(processEventsUntil([&] { return !log.entries.empty(); }));
    EXPECT_NE(log.entries[0].find("Refused a window report from :"), std::string::npos);
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    const QDBusMessage strangersRead = dbus::call(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stranger")),
        {"org.gnome.Shell", "/com/orsavelt/Marzipel/Shell", "com.orsavelt.Marzipel.Shell"},
        QStringLiteral("GetState"));
    EXPECT_EQ(strangersRead.errorName(), "org.freedesktop.DBus.Error.AccessDenied");

    // The shell has no desktop entry for this one: it names such windows "window:N".
    Child other = gnomeShell().startWindow("marzipel-test-unlisted");
    ASSERT_TRUE(waitForFocus(windows, other.pid()));
    EXPECT_EQ(windows.frontmostApplication()->bundleIdentifier, "marzipel-test-unlisted");
    EXPECT_TRUE(windows.runningApplication(player.pid()));
    // The shell signals each full-screen change twice, for the window and for its display: one
    // post each.
    posts = 0;
    ASSERT_TRUE(signalUntil(other.pid(), SIGUSR1, [&] { return !windows.isOnActiveSpace(); }));
    ASSERT_TRUE(signalUntil(other.pid(), SIGUSR2, [&] { return windows.isOnActiveSpace(); }));
    ASSERT_TRUE(signalUntil(other.pid(), SIGUSR1, [&] { return !windows.isOnActiveSpace(); }));
    EXPECT_EQ(posts, 3);
    other.stop();
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    EXPECT_TRUE(processEventsUntil([&] { return !windows.runningApplication(other.pid()); }));
    EXPECT_EQ(log.entries.size(), 1U) << "more than the intruder's report was refused";

    ASSERT_TRUE(gnomeShell().switchExtension(false));
    EXPECT_TRUE(waitForFocus(windows, 0));
    EXPECT_TRUE(windows.runningApplications().empty());
    kill(player.pid(), SIGUSR1);
    EXPECT_TRUE(processEventsUntil([&] { return notified() == 1; }));
    ASSERT_EQ(log.entries.size(), 2U);
    EXPECT_NE(log.entries[1].find("switched off"), std::string::npos) << log.entries[1];
    EXPECT_TRUE(windows.isOnActiveSpace());
    // The next start switches it on again.
    source = std::make_unique<GnomeShellWindows>(windows, log);
    EXPECT_TRUE(processEventsUntil([&] { return gnomeShell().extensionState() == 1; }));
    EXPECT_TRUE(waitForFocus(windows, player.pid(), true));

    // An extension the shell does not know yet asks for a new login.
    GnomeShellWindows unknown(windows, log, QDBusConnection::sessionBus(),
                              QStringLiteral("unknown@orsavelt.com"));
    EXPECT_TRUE(processEventsUntil([&] { return notified() == 2; }));
    ASSERT_EQ(log.entries.size(), 3U);
    EXPECT_NE(log.entries[2].find("log out and in once"), std::string::npos) << log.entries[2];
}

}  // namespace
}  // namespace marzipel
