// Runs the tests of the window on a display, with OpenGL as the program sets it up.
#include "shell/WindowSession.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS(); // the build asks for the list, perhaps where there is no display
    }
    lightbox::WindowSession::PrepareApplication();
    // A pixel of a widget is one of the screen, whatever resolution a virtual screen claims to have.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, false);
    QApplication application(argc, argv);
    // No test waits for an animation.
    QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
    return RUN_ALL_TESTS();
}
