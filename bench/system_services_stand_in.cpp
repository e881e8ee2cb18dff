// Stand-ins for the system services Marzipel asks before it dims, on the system bus, for the
// benches: they answer in a fraction of the time the Python stand-ins of the tests take, so what
// the benches time is Marzipel and the compositor rather than the stand-ins.
//
//     marzipel_bench_services keyboard   UPower with a keyboard backlight (levels 0 to 3, at 2)
//     marzipel_bench_services logind     logind's list of inhibitors, as a GNOME session has it
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QList>
#include <QObject>
#include <QString>
#include <cstdio>
#include <memory>

class KeyboardBacklight : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.UPower.KbdBacklight")

public Q_SLOTS:
    int GetMaxBrightness() { return 3; }
    int GetBrightness() { return level_; }
    void SetBrightness(int level) { level_ = level; }

private:
    int level_ = 2;
};

struct Inhibitor {
    QString what, who, why, mode;
    uint userId = 0, processId = 0;
};
Q_DECLARE_METATYPE(Inhibitor)

QDBusArgument& operator<<(QDBusArgument& out, const Inhibitor& inhibitor) {
    out.beginStructure();
    out << inhibitor.what << inhibitor.who << inhibitor.why << inhibitor.mode << inhibitor.userId
        << inhibitor.processId;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, Inhibitor& inhibitor) {
    in.beginStructure();
    in >> inhibitor.what >> inhibitor.who >> inhibitor.why >> inhibitor.mode >> inhibitor.userId >>
        inhibitor.processId;
    in.endStructure();
    return in;
}

class LoginManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public Q_SLOTS:
    QList<Inhibitor> ListInhibitors() {
        // What the shell and the settings daemon of a GNOME session hold.
        return {{"sleep", "GNOME Shell", "GNOME needs to lock the screen", "delay", 1000, 1200},
                {"handle-power-key:handle-suspend-key:handle-hibernate-key",
                 "GNOME Settings Daemon", "GNOME handling keypresses", "block", 1000, 1300},
                {"sleep", "GNOME Settings Daemon", "GNOME needs to lock the screen", "delay", 1000,
                 1300}};
    }
};

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    qDBusRegisterMetaType<Inhibitor>();
    qDBusRegisterMetaType<QList<Inhibitor>>();
    const QString service = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString();
    std::unique_ptr<QObject> object;
    QString path, name;
    if (service == QLatin1String("keyboard")) {
        object = std::make_unique<KeyboardBacklight>();
        path = QStringLiteral("/org/freedesktop/UPower/KbdBacklight");
        name = QStringLiteral("org.freedesktop.UPower");
    } else if (service == QLatin1String("logind")) {
        object = std::make_unique<LoginManager>();
        path = QStringLiteral("/org/freedesktop/login1");
        name = QStringLiteral("org.freedesktop.login1");
    } else {
        std::fprintf(stderr, "usage: %s keyboard|logind\n", argv[0]);
        return 2;
    }
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.registerObject(path, object.get(), QDBusConnection::ExportAllSlots) ||
        !bus.registerService(name)) {
        std::fprintf(stderr, "could not serve %s on the system bus\n", qPrintable(name));
        return 1;
    }
    return QCoreApplication::exec();
}

#include "system_services_stand_in.moc"
