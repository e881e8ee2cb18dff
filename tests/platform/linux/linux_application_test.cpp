#include <signal.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

#include "platform/linux/linux_application.h"
#include "platform/sim/sim_basics.h"

using namespace marzipel;

namespace {

/// Runs the event loop until the run ends or the deadline passes; the loop's exit code, or -1
/// at the deadline.
int runLoop() {
    QObject deadline;
    QTimer::singleShot(10000, &deadline, [] { QCoreApplication::exit(-1); });
    return QCoreApplication::exec();
}

}  // namespace

class LinuxApplicationTest : public QObject {
    Q_OBJECT

private:
    NotificationCenter center_;
    SimSystemLog systemLog_;
    int launches_ = 0;
    int willTerminate_ = 0;
    Subscription launched_ = center_.subscribe(kApplicationDidFinishLaunchingNotification, nullptr,
                                               [this](const Notification&) { ++launches_; });
    Subscription quitting_ = center_.subscribe(kApplicationWillTerminateNotification, nullptr,
                                               [this](const Notification&) { ++willTerminate_; });

private Q_SLOTS:
    void endsTheRunOnlyWhenTheDecisionAgrees() {
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
        QCOMPARE(willTerminate_, 0);

        agree = true;
        QCOMPARE(launches_, 0);
        QTimer::singleShot(0, &application, [&] { QVERIFY(application.answerEndOfSession()); });
        QCOMPARE(runLoop(), 0);
        QCOMPARE(launches_, 1);
        QCOMPARE(willTerminate_, 1);
        // Once ending, later requests neither ask again nor post again.
        application.terminate();
        QCOMPARE(asked, 4);
        QCOMPARE(willTerminate_, 1);
    }

    // The decision refuses: the signal ends the run all the same.
    void endsOnSignalsThatCannotBeRefused() {
        for (const auto& [signalNumber, name] :
             {std::pair{SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}, {SIGHUP, "SIGHUP"}}) {
            willTerminate_ = 0;
            systemLog_.infoEntries.clear();
            LinuxApplication application(center_, systemLog_, [] { return false; });
            QTimer::singleShot(0, [signalNumber = signalNumber] { ::raise(signalNumber); });
            QCOMPARE(runLoop(), 0);
            QCOMPARE(willTerminate_, 1);
            QCOMPARE(systemLog_.infoEntries,
                     std::vector<std::string>{"com.orsavelt/MarzipelApp: Received " +
                                              std::string(name) + ": quitting as Quit does."});
        }
    }

    void routesDelegateActionsByName() {
        LinuxApplication application(center_, systemLog_);
        QVERIFY(!application.sendAction("showSettingsWindow:"));
        int calls = 0;
        application.installDelegateAction("showSettingsWindow:", [&] { calls += 1; });
        QVERIFY(application.sendAction("showSettingsWindow:"));
        application.installDelegateAction("showSettingsWindow:", [&] { calls += 10; });
        application.sendActionToDelegate("showSettingsWindow:");
        QCOMPARE(calls, 11);
    }

    void showsOneAboutBoxWithNameAndVersion() {
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Marzipel"));
        QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6"));
        LinuxApplication application(center_, systemLog_);
        application.showAboutPanel();
        QMessageBox* box = application.aboutPanel();
        QVERIFY(box && box->isVisible() && !box->isModal());
        QVERIFY(box->text().contains(QStringLiteral("Marzipel")));
        QVERIFY(box->text().contains(QStringLiteral("Version 4.5.6")));
        application.showAboutPanel();
        QCOMPARE(application.aboutPanel(), box);
        box->close();
        QTRY_VERIFY(!application.aboutPanel());
    }

    void readsTheKernelRelease() {
        QCOMPARE(parseKernelRelease("6.1.0-18-amd64"), (OperatingSystemVersion{6, 1, 0}));
        QCOMPARE(parseKernelRelease("6.8.0rc1"), (OperatingSystemVersion{6, 8, 0}));
        QCOMPARE(parseKernelRelease("unknown"), (OperatingSystemVersion{0, 0, 0}));
    }
};

QTEST_MAIN(LinuxApplicationTest)
#include "linux_application_test.moc"
