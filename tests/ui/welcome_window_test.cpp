#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>
#include <algorithm>

#include "ui/app_row.h"
#include "ui/image_toggle.h"
#include "ui/ui_world.h"
#include "ui/welcome_window.h"

using namespace marzipel;

namespace {

QString labelText(const QWidget* window, const char* name) {
    return window->findChild<QLabel*>(name)->text();
}

}  // namespace

class WelcomeWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void closingLeavesTheDockAndConfirmingAlsoStoresWithoutPlayers() {
        UiWorld world;
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

        QTest::mouseClick(window->findChild<ImageToggle*>("nightShiftToggle"), Qt::LeftButton);
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
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0]->objectName(), "IINA");
        QCOMPARE(rows[1]->objectName(), "VLC");
        for (AppRow* row : rows) QVERIFY(!row->findChild<QCheckBox*>("appSwitch")->isChecked());
        for (auto* toggle : window->findChildren<ImageToggle*>()) QVERIFY(toggle->isChecked());

        rows[1]->findChild<QCheckBox*>("appSwitch")->click();
        QTest::mouseClick(window->findChild<QPushButton*>("confirmButton"), Qt::LeftButton);
        QCOMPARE(world.settings.enabledApps().get(),
                 (std::set<AppItem>{{"org.videolan.vlc", "VLC", std::nullopt}}));
        QCOMPARE(world.settings.enabledFeatures().get(),
                 (std::set<Feature>{Feature::keyboardBacklight, Feature::nightShift}));
    }
};

QTEST_MAIN(WelcomeWindowTest)
#include "welcome_window_test.moc"
