#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "ui/app_row.h"
#include "ui/apps_tab.h"
#include "ui/ui_world.h"

using namespace marzipel;

namespace {

std::set<std::string> storedIds(const UiWorld& world) {
    std::set<std::string> ids;
    for (const AppItem& item : world.settings.enabledApps().get()) ids.insert(item.id);
    return ids;
}

QStringList shownNames(const AppsTab& tab) {
    QStringList names;
    for (const AppRow* row : tab.findChild<AppList*>("appList")->rows()) {
        names << row->objectName();
    }
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

class AppsTabTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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

QTEST_MAIN(AppsTabTest)
#include "apps_tab_test.moc"
