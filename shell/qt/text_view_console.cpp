#include "shell/qt/text_view_console.h"

#include <QScrollBar>
#include <QThread>

namespace zelmo {

TextViewConsole::TextViewConsole(QPlainTextEdit& view) : view_(view) {
    view_.setReadOnly(true);
    view_.setUndoRedoEnabled(false);
    view_.setMaximumBlockCount(0);
    view_.setLineWrapMode(QPlainTextEdit::WidgetWidth);
    view_.setFocusPolicy(Qt::NoFocus);
}

void TextViewConsole::Clear() {
    view_.clear();
}

void TextViewConsole::AppendLine(std::wstring line) {
    const QString text = QString::fromStdWString(line);
    const auto append = [this, &text] {
        view_.appendPlainText(text);
        QScrollBar* bar = view_.verticalScrollBar();
        bar->setValue(bar->maximum());
    };
    if (QThread::currentThread() == view_.thread()) {
        append();
    } else {
        QMetaObject::invokeMethod(&view_, append, Qt::BlockingQueuedConnection);
    }
}

}  // namespace zelmo
