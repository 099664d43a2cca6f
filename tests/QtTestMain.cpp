// Runs the tests with a Qt application, so that fonts and painters work.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS(); // the build asks for the list, perhaps where there is no display
    }
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
