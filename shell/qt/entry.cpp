#include <QApplication>

#include "shell/qt/qt_main_window.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Zelmo");
    QApplication::setDesktopFileName("zelmo");
    zelmo::QtMainWindow window;
    if (window.Prepare()) {
        window.show();
        QApplication::exec();
    }
    return 0;
}
