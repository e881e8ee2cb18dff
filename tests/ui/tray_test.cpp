#include <QMenu>
#include <QSystemTrayIcon>
#include <QtTest>

#include "ui/tray.h"
#include "ui/ui_world.h"

using namespace marzipel;

namespace {

/// A tray over a state of its own, as the program makes one.
struct TrayWorld : UiWorld {
    MarzipelState state;
    TrayModel model{state, sim.workspace, sim.application};
    OpenSettingsAccessAction openSettings{sim.application};
    MarzipelTray tray{model, openSettings, sim.application, sim.systemLog};
};

QAction* entry(const MarzipelTray& tray, const char* name) {
    return tray.menu()->findChild<QAction*>(name);
}

/// The text a menu entry shows.
QString shown(const QAction* action) { return action->text().replace("&&", "&"); }

}  // namespace

class TrayTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Every scenario prints the status for each state; this covers the entry that shows it.
    void statusLineFollowsTheState() {
        TrayWorld world;
        MarzipelState& state = world.state;
        world.runApp(7, "org.example.tomandjerry", "Tom & Jerry");
        QAction* status = entry(world.tray, "statusLine");

        QCOMPARE(shown(status), "Waiting for triggers...");
        QVERIFY(!status->isEnabled());
        world.sim.workspace.frontmostProcessId = 7;
        state.setIsActive(true);
        // The name is the one frontmost when the state changed, not whichever is frontmost now.
        world.runApp(8, "org.example.other", "Other");
        world.sim.workspace.frontmostProcessId = 8;
        QCOMPARE(shown(status), "Active for Tom & Jerry");
        state.setIsActive(false);
        QCOMPARE(shown(status), "Waiting for triggers...");
    }

    // That Quit marks the end as the user's own before asking to terminate is run by the quit
    // scenarios, and that one settings window opens whichever way it is asked for by the settings
    // window's test; this covers the entries and the quit keys of the open menu.
    void entriesAndQuitKeysReachTheApplication() {
        TrayWorld world;
        QMenu* menu = world.tray.menu();
        world.sim.application.version = {13, 0, 0};
        entry(world.tray, "configure")->trigger();
        entry(world.tray, "about")->trigger();
        entry(world.tray, "quit")->trigger();
        menu->popup(QPoint(20, 20));
        QVERIFY(QTest::qWaitForWindowExposed(menu));
        QTest::keyClick(menu->windowHandle(), Qt::Key_Q, Qt::ControlModifier);
        QTRY_COMPARE(world.sim.application.calls,
                     (std::vector<std::string>{"activate", "send showSettingsWindow:", "activate",
                                               "about", "terminate", "terminate"}));
    }

    void withoutSystemTraySaysSoAndStillDrawsItsMark() {
        if (QSystemTrayIcon::isSystemTrayAvailable()) QSKIP("this platform has a system tray");
        TrayWorld world;
        QCOMPARE(world.sim.systemLog.entries.size(), 1u);
        QVERIFY(
            world.sim.systemLog.entries[0].starts_with("com.orsavelt/MarzipelApp: No system tray"));
        const QImage mark = world.tray.trayIcon()->icon().pixmap(QSize(18, 18)).toImage();
        QCOMPARE(mark.size(), QSize(18, 18));
        QVERIFY(mark.pixelColor(9, 7).alpha() > 0);
    }
};

QTEST_MAIN(TrayTest)
#include "tray_test.moc"
