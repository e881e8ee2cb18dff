#include <signal.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

#include "platform/linux/linux_application.h"
#include "platform/sim/sim_basics.h"

using namespace marzipel;

namespace {

/// Counts the application's launch and will-terminate notifications.
struct Notifications {
    explicit Notifications(NotificationCenter& center)
        : launched(center.subscribe(kApplicationDidFinishLaunchingNotification, nullptr,
                                    [this](const Notification&) { ++launches; })),
          quitting(center.subscribe(kApplicationWillTerminateNotification, nullptr,
                                    [this](const Notification&) { ++willTerminate; })) {}
    int launches = 0;
    int willTerminate = 0;
    Subscription launched;
    Subscription quitting;
};

/// Runs the event loop until the run ends or the deadline passes; the loop's exit code, or -1
/// at the deadline.
int runLoop() {
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, [] { QCoreApplication::exit(-1); });
    deadline.start(10000);
    return QCoreApplication::exec();
}

}  // namespace

class LinuxApplicationTest : public QObject {
    Q_OBJECT

private:
    NotificationCenter center_;
    SimSystemLog systemLog_;

private Q_SLOTS:
    void endsTheRunOnlyWhenTheDecisionAgrees() {
        Notifications seen(center_);
        bool agree = false;
        int asked = 0;
        LinuxApplication application(center_, systemLog_, [&] {
            ++asked;
            return agree;
        });
        application.terminate();
        QVERIFY(!application.answerEndOfSession());
        // Qt's own request to quit faces the same decision and is swallowed when refused.
        QEvent quit(QEvent::Quit);
        QVERIFY(QCoreApplication::sendEvent(qApp, &quit));
        QCOMPARE(asked, 3);
        QCOMPARE(seen.willTerminate, 0);

        agree = true;
        QCOMPARE(seen.launches, 0);
        QTimer::singleShot(0, &application, [&] { QVERIFY(application.answerEndOfSession()); });
        QCOMPARE(runLoop(), 0);
        QCOMPARE(seen.launches, 1);
        QCOMPARE(seen.willTerminate, 1);
        // Once ending, later requests neither ask again nor post again.
        application.terminate();
        QCOMPARE(asked, 4);
        QCOMPARE(seen.willTerminate, 1);
    }

    // The decision refuses: the signal ends the run all the same.
    void endsOnSignalsThatCannotBeRefused() {
        for (const auto& [signalNumber, name] :
             {std::pair{SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}, {SIGHUP, "SIGHUP"}}) {
            Notifications seen(center_);
            systemLog_.entries.clear();
            LinuxApplication application(center_, systemLog_, [] { return false; });
            QTimer::singleShot(0, [signalNumber] { ::raise(signalNumber); });
            QCOMPARE(runLoop(), 0);
            QCOMPARE(seen.willTerminate, 1);
            QCOMPARE(systemLog_.entries,
                     std::vector<std::string>{"com.orsavelt/MarzipelApp: Received " +
                                              std::string(name) + ": quitting as Quit does."});
        }
    }

    void routesDelegateActionsByName() {
        LinuxApplication application(center_, systemLog_);
        QVERIFY(!application.sendAction("showSettingsWindow:"));
        int calls = 0;
        application.installDelegateAction("showSettingsWindow:", [&] { calls += 1; });
        application.installDelegateAction("showPreferencesWindow:", nullptr);
        QVERIFY(application.delegateRespondsTo("showSettingsWindow:"));
        QVERIFY(!application.delegateRespondsTo("showPreferencesWindow:"));
        QVERIFY(application.sendAction("showSettingsWindow:"));
        application.sendActionToDelegate("showSettingsWindow:");
        application.installDelegateAction("showSettingsWindow:", [&] { calls += 10; });
        application.sendActionToDelegate("showSettingsWindow:");
        QCOMPARE(calls, 12);
    }

    void showsOneAboutBoxWithNameVersionAndIcon() {
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Marzipel"));
        QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6"));
        QPixmap mark(32, 32);
        mark.fill(Qt::red);
        QGuiApplication::setWindowIcon(QIcon(mark));
        LinuxApplication application(center_, systemLog_);
        application.showAboutPanel();
        QMessageBox* box = application.aboutPanel();
        QVERIFY(box && box->isVisible() && !box->isModal());
        QVERIFY(box->text().contains(QStringLiteral("Marzipel")));
        QVERIFY(box->text().contains(QStringLiteral("Version 4.5.6")));
        QVERIFY(!box->iconPixmap().isNull());
        application.showAboutPanel();
        QCOMPARE(application.aboutPanel(), box);
        box->close();
        QTRY_VERIFY(!application.aboutPanel());
    }

    void readsTheKernelRelease() {
        QCOMPARE(parseKernelRelease("6.1.0-18-amd64"), (OperatingSystemVersion{6, 1, 0}));
        QCOMPARE(parseKernelRelease("5.15"), (OperatingSystemVersion{5, 15, 0}));
        QCOMPARE(parseKernelRelease("4.19.304.7"), (OperatingSystemVersion{4, 19, 304}));
        QCOMPARE(parseKernelRelease("6.8.0rc1"), (OperatingSystemVersion{6, 8, 0}));
        QCOMPARE(parseKernelRelease("unknown"), (OperatingSystemVersion{0, 0, 0}));
        QCOMPARE(parseKernelRelease(""), (OperatingSystemVersion{0, 0, 0}));
        LinuxApplication application(center_, systemLog_);
        QVERIFY(application.operatingSystemVersion().major >= 2);
    }
};

QTEST_MAIN(LinuxApplicationTest)
#include "linux_application_test.moc"
