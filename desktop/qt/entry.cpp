#include <QApplication>

#include "desktop/qt/desktop.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    return zelmo::RunDesktop();
}
