// The windows and the tray over an in-memory world.
#include <QtTest>
#include <QtWidgets>
#include <algorithm>

#include "ui/app_row.h"
#include "ui/apps_tab.h"
#include "ui/image_toggle.h"
#include "ui/settings_window.h"
#include "ui/tray.h"
#include "ui/ui_world.h"
#include "ui/welcome_window.h"

using namespace marzipel;

namespace {

/// The settings window opened the way the program opens it, over an in-memory world whose
/// documents folder is a fresh temporary one.
struct OpenWindow {
    UiWorld world;
    QTemporaryDir documents;
    OpenSettingsAccessAction openSettings{world.sim.application};
    std::unique_ptr<SettingsWindowController> controller;

    explicit OpenWindow(bool updaterAvailable = true) {
        world.sim.userDirectories.documents = documents.path().toStdString();
        world.sim.updater.available = updaterAvailable;
        world.sim.brightnessFactory.filterName = BlueLightFilterName::nightColor;
        controller = std::make_unique<SettingsWindowController>(world.services(), openSettings);
        controller->show();
    }
    SettingsWindow* window() const { return controller->window(); }
    template <typename T>
    T* find(const char* name) const {
        return window()->findChild<T*>(name);
    }
    bool advancedShown() const { return find<QWidget>("advancedSettings")->isVisible(); }
    std::set<Feature> storedFeatures() const { return world.settings.enabledFeatures().get(); }
};

void key(QWindow* window, bool press, Qt::KeyboardModifiers modifiers, bool autoRepeat = false) {
    QTest::simulateEvent(window, press, Qt::Key_D, modifiers, "d", autoRepeat);
}

std::set<std::string> storedIds(const UiWorld& world) {
    std::set<std::string> ids;
    for (const AppItem& item : world.settings.enabledApps().get()) ids.insert(item.id);
    return ids;
}

/// The names of the app rows that `parent` lists.
QStringList shownNames(const QWidget& parent) {
    QStringList names;
    for (const AppRow* row : parent.findChild<AppList*>()->rows()) names << row->objectName();
    return names;
}

/// Flips a switch as assistive technology does: through its accessible action, with no click.
void toggleAccessibly(QWidget* widget) {
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(widget);
    QVERIFY(access && access->actionInterface());
    access->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
}

void click(QWidget* widget) {
    QVERIFY(widget);
    QTest::mouseClick(widget, Qt::LeftButton);
}

template <typename T = QToolButton>
T* control(const AppsTab& tab, const char* rowName, const char* name) {
    const auto* row = tab.findChild<AppRow*>(rowName);
    return row ? row->findChild<T*>(name) : nullptr;
}

QString labelText(const QWidget* window, const char* name) {
    return window->findChild<QLabel*>(name)->text();
}

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

class WindowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void togglesWriteThroughAtOnce() {
        OpenWindow open;
        QVERIFY(QTest::qWaitForWindowExposed(open.window()));
        auto* nightShift = open.find<QCheckBox>("disableNightShift");
        QVERIFY(nightShift->isChecked());
        QCOMPARE(nightShift->text(), "Disable Night Color");

        QTest::mouseClick(nightShift, Qt::LeftButton);
        QCOMPARE(open.storedFeatures(), std::set<Feature>{Feature::keyboardBacklight});
        open.find<QCheckBox>("disableKeyboardBacklight")->click();
        QVERIFY(open.storedFeatures().empty());
        toggleAccessibly(nightShift);
        QCOMPARE(open.storedFeatures(), std::set<Feature>{Feature::nightShift});

        // Changes made elsewhere show up too.
        open.world.settings.setFeatureEnabled(Feature::keyboardBacklight, true);
        QTRY_VERIFY(open.find<QCheckBox>("disableKeyboardBacklight")->isChecked());

        toggleAccessibly(open.find<QCheckBox>("launchAtLogin"));
        QCOMPARE(open.world.loginItems.currentStatus, LoginItemStatus::enabled);
        open.world.loginItems.unregisterError = "refused";
        auto* launchAtLogin = open.find<QCheckBox>("launchAtLogin");
        launchAtLogin->click();
        QVERIFY(!launchAtLogin->isChecked());
        QTRY_VERIFY(launchAtLogin->isChecked());

        open.find<QCheckBox>("automaticallyCheckForUpdates")->click();
        QCOMPARE(open.world.sim.updater.automaticChecks, false);
        open.find<QAbstractButton>("checkNow")->click();
        QCOMPARE(open.world.sim.updater.checks, 1);
    }

    void ctrlShiftDTogglesAdvancedOnReleaseWithItsDebugLogging() {
        OpenWindow open;
        QVERIFY(QTest::qWaitForWindowActive(open.window()));
        QWindow* window = open.window()->windowHandle();
        const auto ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
        QVERIFY(!open.advancedShown());

        QTest::keyClick(window, Qt::Key_D, Qt::ControlModifier);
        QTest::keyClick(window, Qt::Key_D, Qt::ShiftModifier);
        key(window, true, ctrlShift);
        for (int i = 0; i < 3; ++i) {
            key(window, false, ctrlShift, true);
            key(window, true, ctrlShift, true);
        }
        QCoreApplication::processEvents();
        QVERIFY(!open.advancedShown());
        key(window, false, ctrlShift);
        QTRY_VERIFY(open.advancedShown());
        QCoreApplication::processEvents();
        QVERIFY(open.advancedShown());

        auto* logs = open.find<QAbstractButton>("logsLine");
        const QString path = open.documents.filePath("Marzipel_debug.log");
        QCOMPARE(logs->text(), "Logs will be saved to " + path);
        open.find<QCheckBox>("enableDebugLogging")->click();
        QVERIFY(open.world.settings.debugLoggingEnabled().get());
        QTRY_COMPARE(logs->text(), "Logs are being saved to " + path);
        open.find<QCheckBox>("enableDebugLogging")->click();
        QTRY_COMPARE(logs->text(), "Logs will be saved to " + path);

        QTest::mouseClick(logs, Qt::LeftButton);
        QCOMPARE(open.world.sim.workspace.openedFolders,
                 std::vector<std::string>{open.documents.path().toStdString()});
    }

    void oneWindowWhicheverWayItOpensAndAFreshOneOnceClosed() {
        OpenWindow open(false);
        SettingsWindow* first = open.window();
        QVERIFY(QTest::qWaitForWindowExposed(first));
        QVERIFY(!open.find<QWidget>("updaterRow")->isVisible());
        open.world.sim.application.sendActionToDelegate("showSettingsWindow:");
        QVERIFY(!open.openSettings());
        QCOMPARE(open.window(), first);

        first->close();
        QTRY_VERIFY(!open.window());
        open.controller->show();
        QVERIFY(open.window());
        QVERIFY(!open.advancedShown());
    }

    void listsTriggerAppsAndAddsRunningOnesThroughThePicker() {
        UiWorld world;
        AppsTab tab(world.services());
        tab.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tab));
        auto* emptyText = tab.findChild<QLabel*>("emptyText");
        QCOMPARE(emptyText->text(), "You haven't added any apps yet.");
        QVERIFY(emptyText->isVisible());

        world.settings.addTriggerApp({"com.example.beta", "beta", std::nullopt});
        world.settings.addTriggerApp({"org.videolan.vlc", "VLC", "/Applications/VLC.app/x.icns"});
        world.settings.addTriggerApp({"com.example.alpha", "Alpha", std::nullopt});
        QVERIFY(!emptyText->isVisible());
        QCOMPARE(shownNames(tab), QStringList({"Alpha", "beta", "VLC"}));
        QVERIFY(!control(tab, "VLC", "videoSwitch"));

        click(control(tab, "Alpha", "videoSwitch"));
        const AppFeatures features = world.settings.appFeatures().get();
        QVERIFY(features.at("com.example.alpha").contains(Feature::onlyWhenPlayingVideo));
        QVERIFY(!features.contains("com.example.beta"));
        QVERIFY(control(tab, "Alpha", "videoSwitch")->isChecked());
        QVERIFY(!control(tab, "beta", "videoSwitch")->isChecked());

        for (const char* name : {"Alpha", "beta", "VLC"}) click(control(tab, name, "removeButton"));
        QVERIFY(storedIds(world).empty());
        QVERIFY(emptyText->isVisible());
        QTRY_VERIFY(!tab.findChild<AppRow*>("Alpha"));

        // Regular running apps by name, from the first that is not a trigger app yet.
        world.runApp(1, "com.example.gamma", "gamma");
        world.runApp(2, "com.example.beta", "beta");
        world.runApp(4, "com.example.alpha", "Alpha");
        world.settings.addTriggerApp({"com.example.alpha", "Alpha", std::nullopt});
        auto* picker = tab.findChild<QComboBox*>("runningApps");
        click(tab.findChild<QToolButton*>("refreshRunningApps"));
        QCOMPARE(picker->count(), 3);
        QCOMPARE(picker->itemText(0), "Alpha");
        QCOMPARE(picker->currentText(), "beta");
        click(tab.findChild<QToolButton*>("addRunningApp"));
        QCOMPARE(storedIds(world),
                 (std::set<std::string>{"com.example.alpha", "com.example.beta"}));
        QCOMPARE(picker->currentText(), "gamma");

        tab.hide();
        world.runApp(6, "com.example.epsilon", "epsilon");
        tab.show();
        QCOMPARE(picker->itemText(2), "epsilon");
    }

    void importFailureAlertsThenReadableBundlesAreAddedAndTheRestSkipped() {
        UiWorld world;
        world.filePicker.result = Status::failure("The folder couldn't be read.");
        AppsTab tab(world.services());
        tab.show();
        auto* browse = tab.findChild<QPushButton*>("browseButton");
        click(browse);

        QMessageBox* alert = nullptr;
        QTRY_VERIFY((alert = tab.findChild<QMessageBox*>()) && alert->isVisible());
        QCOMPARE(alert->informativeText(), "Failed to import selected app.");
        QVERIFY(storedIds(world).empty());
        click(alert->buttons().front());
        QTRY_VERIFY(!tab.findChild<QMessageBox*>());

        world.addBundle("/Applications/A.app", "com.example.a", "A");
        world.addBundle("/Applications/C.app", "com.example.c", "C");
        world.addBundle("/Applications/Shut.app", "com.example.shut", "Shut");
        world.settings.addTriggerApp({"com.example.c", "C", std::nullopt});
        world.filePicker.refused = {"/Applications/Shut.app"};
        world.filePicker.result =
            std::vector<std::string>{"/Applications/A.app", "/Applications/Broken.app",
                                     "/Applications/Shut.app", "/Applications/C.app"};
        click(browse);
        QCOMPARE(storedIds(world), (std::set<std::string>{"com.example.a", "com.example.c"}));
        // Access is handed back for every file it was granted for, and only for those.
        QCOMPARE(world.filePicker.released,
                 (std::vector<std::string>{"/Applications/A.app", "/Applications/Broken.app",
                                           "/Applications/C.app"}));
        QCOMPARE(shownNames(tab), QStringList({"A", "C"}));
        QVERIFY(!tab.findChild<QMessageBox*>());
    }

    void closingLeavesTheDockAndConfirmingAlsoStoresWithoutPlayers() {
        UiWorld world;
        world.sim.brightnessFactory.filterName = BlueLightFilterName::none;
        world.settings.addTriggerApp({"com.example.old", "Old", std::nullopt});
        WelcomeWindowManager manager(world.services());
        manager.showWelcomeWindow();
        manager.window()->close();
        QTRY_VERIFY(!manager.window());
        QVERIFY(!world.settings.welcomeScreenShown().get());
        QCOMPARE(world.settings.enabledApps().get().size(), 1u);

        manager.showWelcomeWindow();
        QWidget* window = manager.window();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QVERIFY(!(window->windowFlags() & Qt::WindowCloseButtonHint));
        QCOMPARE(world.sim.application.calls.back(), "activate");
        QCOMPARE(labelText(window, "detectedAppsHeading"),
                 "Unfortunately, we found no known video apps on your device.");
        QCOMPARE(labelText(window, "featuresHeading"),
                 "When one of the apps I will select goes fullscreen, I want to");
        QVERIFY(!window->findChild<AppList*>());

        auto* blueLight = window->findChild<ImageToggle*>("nightShiftToggle");
        QCOMPARE(blueLight->text(), "Disable the blue-light filter");
        toggleAccessibly(blueLight);
        QTest::mouseClick(window->findChild<QPushButton*>("confirmButton"), Qt::LeftButton);
        QVERIFY(world.settings.enabledApps().get().empty());
        QCOMPARE(world.settings.enabledFeatures().get(),
                 std::set<Feature>{Feature::keyboardBacklight});
        QVERIFY(world.settings.welcomeScreenShown().get());
        QTRY_VERIFY(!manager.window());
        // Confirming closes the window, which deals with launch at login and the Dock once.
        QCOMPARE(std::ranges::count(world.loginItems.calls, "register"), 1);
        QCOMPARE(std::ranges::count(world.sim.application.calls, "policy accessory"), 2);
    }

    void offersFoundPlayersAllOffAndStoresThePicked() {
        UiWorld world;
        // Players installed in the applications folder that discovery searches first.
        world.bundleFiles.addEntry("/Applications", "/Applications/IINA.app");
        world.addBundle("/Applications/IINA.app", "com.colliderli.iina", "IINA");
        world.bundleFiles.addEntry("/Applications", "/Applications/VLC.app");
        world.addBundle("/Applications/VLC.app", "org.videolan.vlc", "VLC");
        world.settings.addTriggerApp({"com.example.old", "Old", std::nullopt});
        WelcomeWindowManager manager(world.services());
        manager.showWelcomeWindow();
        QPointer<QWidget> first = manager.window();
        manager.showWelcomeWindow();
        QVERIFY(!first);
        QWidget* window = manager.window();

        QCOMPARE(labelText(window, "detectedAppsHeading"),
                 "We have detected a few compatible apps for you");
        QCOMPARE(labelText(window, "featuresHeading"),
                 "When one of the above apps goes fullscreen, I want to:");
        const QList<AppRow*> rows = window->findChild<AppList*>()->rows();
        QCOMPARE(shownNames(*window), QStringList({"IINA", "VLC"}));
        for (AppRow* row : rows) QVERIFY(!row->findChild<QCheckBox*>("appSwitch")->isChecked());
        for (auto* toggle : window->findChildren<ImageToggle*>()) QVERIFY(toggle->isChecked());

        rows[1]->findChild<QCheckBox*>("appSwitch")->click();
        QTest::mouseClick(window->findChild<QPushButton*>("confirmButton"), Qt::LeftButton);
        QCOMPARE(world.settings.enabledApps().get(),
                 (std::set<AppItem>{{"org.videolan.vlc", "VLC", std::nullopt}}));
        QCOMPARE(world.settings.enabledFeatures().get(),
                 (std::set<Feature>{Feature::keyboardBacklight, Feature::nightShift}));
    }

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
    // scenarios, and that one settings window opens whichever way it is asked for above; this
    // covers the entries and the quit keys of the open menu.
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

QTEST_MAIN(WindowsTest)
#include "windows_test.moc"
