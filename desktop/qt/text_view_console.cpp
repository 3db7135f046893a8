#include "desktop/qt/text_view_console.h"

#include <QScrollBar>
#include <QThread>

namespace zelmo {

namespace {

constexpr int firstLines = 20;
constexpr int millisecondsBetweenLooks = 50;

}  // namespace

TextViewConsole::TextViewConsole(QPlainTextEdit& view) : view_(view) {
    view_.setReadOnly(true);
    view_.setUndoRedoEnabled(false);
    view_.setMaximumBlockCount(0);
    view_.setLineWrapMode(QPlainTextEdit::WidgetWidth);
    view_.setFocusPolicy(Qt::NoFocus);
    view_.viewport()->setCursor(Qt::ArrowCursor);
    sinceShown_.start();
}

void TextViewConsole::Clear() {
    view_.clear();
}

void TextViewConsole::AppendLine(std::wstring line) {
    const QString text = QString::fromStdWString(line);
    const auto show = [this, &text]() noexcept { ShowLine(text); };
    if (QThread::currentThread() == view_.thread()) {
        show();
    } else {
        QMetaObject::invokeMethod(&view_, show, Qt::BlockingQueuedConnection);
    }
}

void TextViewConsole::ShowLine(const QString& text) {
    view_.appendPlainText(text);
    QScrollBar* bar = view_.verticalScrollBar();
    bar->setValue(bar->maximum());
    // A command that takes long lets its lines be seen while it works. A long listing must not
    // become slow because of that.
    if (view_.blockCount() <= firstLines || sinceShown_.elapsed() >= millisecondsBetweenLooks) {
        view_.viewport()->repaint();
        sinceShown_.restart();
    }
}

}  // namespace zelmo
