#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include "ui/app_row.h"
#include "ui/apps_tab.h"
#include "ui/settings_window.h"
#include "ui/ui_world.h"

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

QStringList shownNames(const AppsTab& tab) {
    QStringList names;
    for (const AppRow* row : tab.findChild<AppList*>("appList")->rows()) names << row->objectName();
    return names;
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

}  // namespace

class SettingsWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void togglesWriteThroughAtOnce() {
        OpenWindow open;
        QVERIFY(QTest::qWaitForWindowExposed(open.window()));
        auto* nightShift = open.find<QCheckBox>("disableNightShift");
        QVERIFY(nightShift->isChecked());

        QTest::mouseClick(nightShift, Qt::LeftButton);
        QCOMPARE(open.storedFeatures(), std::set<Feature>{Feature::keyboardBacklight});
        open.find<QCheckBox>("disableKeyboardBacklight")->click();
        QVERIFY(open.storedFeatures().empty());

        // Changes made elsewhere show up too.
        open.world.settings.setFeatureEnabled(Feature::keyboardBacklight, true);
        QTRY_VERIFY(open.find<QCheckBox>("disableKeyboardBacklight")->isChecked());

        open.find<QCheckBox>("launchAtLogin")->click();
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
        world.filePicker.result.error = "The folder couldn't be read.";
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
        world.filePicker.result = {};
        world.filePicker.result.paths = {"/Applications/A.app", "/Applications/Broken.app",
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
};

QTEST_MAIN(SettingsWindowTest)
#include "settings_window_test.moc"
