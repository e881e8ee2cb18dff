// Our KWin script inside a real headless KWin, reporting to Marzipel's bus name in this process,
// while the test's own windows come and go; and its Plasma 6 branch in Qt's JavaScript engine,
// as the real KWin here is 5.27.
#include "platform/linux/windows/kwin/kwin_window_source.h"

#include <gtest/gtest.h>

#include <QDBusPendingCall>
#include <QFile>
#include <QJSEngine>

#include "integration/wayland/kwin_session.h"
#include "integration/wayland/reported_windows_wait.h"
#include "platform/linux/dbus/marzipel_bus_service.h"
#include "platform/sim/sim_basics.h"
#include "support/fake_desktop_entries.h"

namespace marzipel {
namespace {

constexpr char kPlayer[] = "marzipel-test-player";

/// Reports from KWin itself, each malformed in its own way and refused with a line of its own,
/// then sound ones, a repeat among them, which changes nothing.
constexpr char kReports[] = R"(
function report(method, argument) {
    callDBus("com.orsavelt.Marzipel", "/com/orsavelt/Marzipel", "com.orsavelt.Marzipel", method,
             argument);
}
report("ReportActiveWindow", "text");
report("ReportActiveWindow", {fullScreen: true});
report("ReportActiveWindow", {pid: 0});
report("ReportActiveWindow", {pid: 4194305});
report("ReportActiveWindow", {pid: 1.5});
report("ReportActiveWindow", {pid: "12"});
report("ReportActiveWindow", {pid: 1, fullScreen: "yes"});
report("ReportActiveWindow", {pid: 1, resourceClass: "x".repeat(256)});
report("ReportWindows", [1]);
report("ReportWindows", {pid: 1});
report("ReportWindows", [{pid: 1}, {pid: 1, resourceName: 7}]);
report("ReportWindows", Array(1025).fill({pid: 1}));
report("OpenWindows", []);
report("ReportActiveWindow", {pid: 1, fullScreen: true});
report("ReportActiveWindow", {pid: 1, fullScreen: true});
report("ReportActiveWindow", {});
)";
constexpr std::size_t kMalformedReports = 13;

TEST(KWinWindowSourceTest, TakesKWinsSoundReportsUntilItLeavesAndRefusesOthersWithOneLineEach) {
    waylandtest::KWinSession kwin;
    FakeDesktopEntries entries;
    entries.add(kPlayer, "Test Player");
    SimSystemLog log;
    MarzipelBusService service{log};
    ASSERT_EQ(service.claim(), MarzipelBusService::Claim::owned);
    ReportedWindows windows{entries};
    int posts = 0;
    int toldFullScreen = 0;
    windows.setActiveSpaceChangedHandler([&] { ++posts; });
    windows.setFullScreenLikelyHandler([&] { ++toldFullScreen; });
    // Another script unloaded while a later one stays: ours is given the number of the one that
    // stays, and still runs.
    const std::string first = kwin.runScript("// stays loaded\n", true);
    const std::string second = kwin.runScript("// stays loaded\n", true);
    kwin.unloadScript(first);
    Child early = kwin.openWindow("marzipel-test-other");
    KWinWindowSource source(windows, service, KWIN_SCRIPT, log);
    // The script's first report: the window that has focus.
    ASSERT_TRUE(waitForFocus(windows, early.pid()))
        << (log.entries.empty() ? "" : log.entries.front());
    kwin.unloadScript(second);
    early.stop();
    ASSERT_TRUE(waitForFocus(windows, 0));
    posts = 0;
    toldFullScreen = 0;

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

    kwin.runScript(kReports);
    EXPECT_TRUE(processEventsUntil([&] { return posts == 2 && !windows.active(); }))
        << posts << " reports posted of 2";
    EXPECT_EQ(toldFullScreen, 1);
    ASSERT_EQ(log.entries.size(), 1 + kMalformedReports);
    EXPECT_NE(log.entries.front().find("only org.kde.KWin reports windows"), std::string::npos);
    EXPECT_NE(log.entries[3].find("pid is out of range"), std::string::npos) << log.entries[3];
    log.entries.clear();

    Child player = kwin.openWindow(kPlayer);
    ASSERT_TRUE(waitForFocus(windows, player.pid()));
    ASSERT_EQ(windows.frontmostApplication()->localizedName, "Test Player");
    Child viewer = kwin.openWindow("marzipel-test-other");
    ASSERT_TRUE(waitForFocus(windows, viewer.pid()));
    EXPECT_TRUE(waitForRunning(windows, {player.pid(), viewer.pid()}));
    // The focused window closes: focus goes back to the player.
    viewer.stop();
    EXPECT_TRUE(waitForFocus(windows, player.pid()));
    EXPECT_TRUE(waitForRunning(windows, {player.pid()}));
    EXPECT_TRUE(log.entries.empty()) << log.entries.front();

    // KWin leaving leaves no focus, and a KWin that returns gets the script again.
    kwin.kill();
    EXPECT_TRUE(waitForFocus(windows, 0));
    EXPECT_TRUE(windows.runningApplications().empty());
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries.front().find("KWin left the session bus"), std::string::npos);
    kwin.ensureRunning();
    Child again = kwin.openWindow(kPlayer);
    EXPECT_TRUE(waitForFocus(windows, again.pid()));
}

// callDBus throws on null or undefined anywhere in its argument, where KWin would abort. A call
// is kept as its method and the pid of each window, "F" marking a full-screen one.
constexpr char kStandIn[] = R"(
function signal() {
    var handlers = [];
    return { connect: f => handlers.push(f), emit: w => handlers.forEach(f => f(w)) };
}
function makeWindow(pid, appId, normal) {
    return { pid: pid, desktopFileName: appId, fullScreen: false, normalWindow: normal,
             fullScreenChanged: signal() };
}
function carriesNothing(value) {
    if (value === null || value === undefined) return true;
    return typeof value === "object" && Object.values(value).some(carriesNothing);
}
function brief(w) { return w.pid === undefined ? "none" : w.pid + (w.fullScreen ? "F" : ""); }
var calls = [];
function callDBus(service, path, iface, method, argument) {
    if (carriesNothing(argument)) throw new Error("bad call " + method);
    calls.push(method + " " + [].concat(argument).map(brief).join(","));
}
var windows = [makeWindow(10, "mpv", true), makeWindow(11, "panel", false)];
var workspace = { activeWindow: windows[0], windowList: () => windows.slice(),
                  windowActivated: signal(), windowAdded: signal(), windowRemoved: signal() };
)";

TEST(KWinWindowReportsScript, Plasma6NamesReportFocusFullScreenAndWindows) {
    QJSEngine engine;
    QFile script(KWIN_SCRIPT);
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    for (const QString& source :
         {QString::fromUtf8(kStandIn), QString::fromUtf8(script.readAll()), QStringLiteral(R"(
        var x11 = makeWindow(12, null, true);
        windows.push(x11);
        workspace.windowAdded.emit(x11);
        workspace.activeWindow = x11;
        workspace.windowActivated.emit(x11);
        x11.fullScreen = true;
        x11.fullScreenChanged.emit();
        windows[0].fullScreen = true;
        windows[0].fullScreenChanged.emit();
        workspace.activeWindow = null;
        workspace.windowActivated.emit(null);
        workspace.windowRemoved.emit(x11);
    )")}) {
        const QJSValue result = engine.evaluate(source);
        ASSERT_FALSE(result.isError()) << result.toString().toStdString();
    }
    EXPECT_EQ(engine.evaluate("calls.join('\\n')").toString().toStdString(),
              "ReportWindows 10\n"  // at start
              "ReportActiveWindow 10\n"
              "ReportWindows 10,12\n"
              "ReportActiveWindow 12\n"
              "ReportActiveWindow 12F\n"
              "ReportActiveWindow none\n"
              "ReportWindows 10F");
}

}  // namespace
}  // namespace marzipel
