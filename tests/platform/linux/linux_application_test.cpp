#include <signal.h>

#include <QApplication>
#include <QMessageBox>
#include <QProcess>
#include <QTimer>
#include <QtTest>

#include "platform/linux/linux_application.h"
#include "platform/sim/sim_basics.h"

using namespace marzipel;

namespace {

constexpr int kDeadlineMs = 10000;

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
    deadline.start(kDeadlineMs);
    return QCoreApplication::exec();
}

}  // namespace

class LinuxApplicationTest : public QObject {
    Q_OBJECT

private:
    NotificationCenter center_;
    SimSystemLog systemLog_;

private Q_SLOTS:
    void reportsLaunchAndEndsTheRunOnlyWhenTheDecisionAgrees() {
        Notifications seen(center_);
        bool agree = false;
        int asked = 0;
        LinuxApplication application(center_, systemLog_, [&] {
            ++asked;
            return agree;
        });
        application.terminate();
        QCOMPARE(asked, 1);
        QCOMPARE(seen.willTerminate, 0);

        // Qt's own request to quit faces the same decision and is swallowed when refused.
        QEvent quit(QEvent::Quit);
        QVERIFY(QCoreApplication::sendEvent(qApp, &quit));
        QCOMPARE(asked, 2);
        QCOMPARE(seen.willTerminate, 0);

        agree = true;
        QCOMPARE(seen.launches, 0);
        QTimer::singleShot(0, &application, [&] { application.terminate(); });
        QCOMPARE(runLoop(), 0);
        QCOMPARE(seen.launches, 1);
        QCOMPARE(seen.willTerminate, 1);
        // Once ending, later requests neither ask again nor post again.
        application.terminate();
        QCOMPARE(asked, 3);
        QCOMPARE(seen.willTerminate, 1);
    }

    void answersTheEndOfTheSessionWithTheDecision() {
        Notifications seen(center_);
        bool agree = false;
        LinuxApplication application(center_, systemLog_, [&] { return agree; });
        QVERIFY(!application.answerEndOfSession());
        QCOMPARE(seen.willTerminate, 0);
        agree = true;
        QVERIFY(application.answerEndOfSession());
        QCOMPARE(seen.willTerminate, 1);
    }

    void routesDelegateActionsByName() {
        LinuxApplication application(center_, systemLog_);
        QVERIFY(!application.delegateRespondsTo("showSettingsWindow:"));
        QVERIFY(!application.sendAction("showSettingsWindow:"));
        int first = 0;
        int second = 0;
        application.installDelegateAction("showSettingsWindow:", [&] { ++first; });
        QVERIFY(application.delegateRespondsTo("showSettingsWindow:"));
        QVERIFY(!application.delegateRespondsTo("showPreferencesWindow:"));
        QVERIFY(application.sendAction("showSettingsWindow:"));
        application.sendActionToDelegate("showSettingsWindow:");
        QCOMPARE(first, 2);
        application.installDelegateAction("showSettingsWindow:", [&] { ++second; });
        application.sendActionToDelegate("showSettingsWindow:");
        QCOMPARE(first, 2);
        QCOMPARE(second, 1);
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
        QVERIFY(box);
        QVERIFY(box->isVisible());
        QVERIFY(!box->isModal());
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

    void endsOnSignalsThatCannotBeRefused_data() {
        QTest::addColumn<int>("signalNumber");
        QTest::addColumn<QString>("name");
        QTest::newRow("SIGTERM") << int(SIGTERM) << QStringLiteral("SIGTERM");
        QTest::newRow("SIGINT") << int(SIGINT) << QStringLiteral("SIGINT");
        QTest::newRow("SIGHUP") << int(SIGHUP) << QStringLiteral("SIGHUP");
    }

    void endsOnSignalsThatCannotBeRefused() {
        QFETCH(int, signalNumber);
        QFETCH(QString, name);
        QProcess probe;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        probe.setProcessEnvironment(environment);
        // The decision refuses: the signal ends the program all the same.
        probe.start(QStringLiteral(TERMINATION_PROBE));
        QVERIFY(probe.waitForStarted(kDeadlineMs));
        QByteArray output;
        QDeadlineTimer deadline(kDeadlineMs);
        while (!output.contains("ready\n") && !deadline.hasExpired()) {
            probe.waitForReadyRead(int(deadline.remainingTime()));
            output += probe.readAllStandardOutput();
        }
        QVERIFY2(output.contains("ready\n"), output.constData());

        QCOMPARE(::kill(pid_t(probe.processId()), signalNumber), 0);
        const bool finished = probe.waitForFinished(kDeadlineMs);
        if (!finished) probe.kill();
        QVERIFY(finished);
        output += probe.readAllStandardOutput();
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QCOMPARE(probe.exitCode(), 0);
        const QByteArray expected = "ready\nlog: Received " + name.toUtf8() +
                                    ": quitting as Quit does.\nwill-terminate\nended\n";
        QCOMPARE(output, expected);
    }
};

QTEST_MAIN(LinuxApplicationTest)
#include "linux_application_test.moc"
