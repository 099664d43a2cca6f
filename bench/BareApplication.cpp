// What a program with Qt's widgets needs at least to start; the reference for the start of Lightbox.
#include <QApplication>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return 0;
}
