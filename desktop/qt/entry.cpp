#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "desktop/qt/desktop.h"

namespace {

/// Without a display to open windows on, the toolkit gives up with a fatal message and an abort.
/// The program ends by itself before that, with one line; the notes and warnings on the way
/// there say the same in several.
void EndWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::fputs("zelmo: no window can be opened (is there a display that can be reached?)\n",
                   stderr);
        std::_Exit(1);
    }
    if (type == QtDebugMsg) {  // what a user asks for who looks for the reason
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
    }
}

}  // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(EndWithoutDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    return zelmo::RunDesktop();
}
