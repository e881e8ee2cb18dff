#include <QAbstractButton>
#include <QCheckBox>
#include <QTemporaryDir>
#include <QtTest>

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
};

QTEST_MAIN(SettingsWindowTest)
#include "settings_window_test.moc"
