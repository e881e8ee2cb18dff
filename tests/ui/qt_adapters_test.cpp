#include <QtTest>

class Placeholder : public QObject {
    Q_OBJECT
};

QTEST_MAIN(Placeholder)
#include "qt_adapters_test.moc"
