#include <gtest/gtest.h>

#include <QCoreApplication>

// The adapters under test deliver their events on Qt's event loop.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
