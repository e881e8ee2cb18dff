#include <QtTest>

class Placeholder : public QObject {
    Q_OBJECT
};

QTEST_MAIN(Placeholder)
#include "welcome_window_test.moc"
