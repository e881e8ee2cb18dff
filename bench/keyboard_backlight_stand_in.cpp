// UPower with nothing but a keyboard backlight (levels 0 to 3, at 2), on the system bus, for the
// benches: it answers in a fraction of the time the Python stand-in of the tests takes, so what
// the benches time is Marzipel and the compositor rather than the stand-in.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <cstdio>

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

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    KeyboardBacklight keyboard;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.registerObject(QStringLiteral("/org/freedesktop/UPower/KbdBacklight"), &keyboard,
                            QDBusConnection::ExportAllSlots) ||
        !bus.registerService(QStringLiteral("org.freedesktop.UPower"))) {
        std::fprintf(stderr, "could not serve UPower on the system bus\n");
        return 1;
    }
    return QCoreApplication::exec();
}

#include "keyboard_backlight_stand_in.moc"
