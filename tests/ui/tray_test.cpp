#include <QtTest>

class Placeholder : public QObject {
    Q_OBJECT
};

QTEST_MAIN(Placeholder)
#include "tray_test.moc"
