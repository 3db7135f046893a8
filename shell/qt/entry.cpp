#include <QApplication>
#include <QIcon>

#include "shell/data_files.h"
#include "shell/qt/qt_main_window.h"
#include "shell/text.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Zelmo");
    QApplication::setDesktopFileName("zelmo");
    const auto icon = zelmo::FindDataFile(zelmo::DesktopDataFolders(), "zelmo.ico");
    QApplication::setWindowIcon(QIcon(QString::fromStdWString(zelmo::PathText(icon))));
    zelmo::QtMainWindow window;
    if (window.Prepare()) {
        window.show();
        application.exec();
    }
    return 0;
}
