#include "desktop/qt/desktop.h"

#include <QApplication>

#include "desktop/qt/qt_main_window.h"

namespace zelmo {

int RunDesktop() {
    QApplication::setApplicationName("Zelmo");
    QApplication::setDesktopFileName("zelmo");
    QApplication::setQuitOnLastWindowClosed(false);  // the main window's logic ends the program
    QtMainWindow window;
    if (window.Prepare()) {
        window.show();
        window.activateWindow();  // without a window manager nobody else gives it the keyboard
        QApplication::exec();
    }
    return 0;
}

}  // namespace zelmo
