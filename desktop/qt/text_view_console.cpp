#include "desktop/qt/text_view_console.h"

#include <QScrollBar>
#include <QThread>

namespace zelmo {

namespace {

constexpr int linesShownOneByOne = 20;
constexpr int millisecondsBetweenRepaints = 50;

/// The text with a character that every font can show for the bytes from 0xF0 on, which are
/// widened to where Unicode has none that are drawn.
QString Visible(const std::wstring& line) {
    QString text = QString::fromStdWString(line);
    for (QChar& character : text) {
        if (character.unicode() >= 0xFFF0) {
            character = QChar::ReplacementCharacter;
        }
    }
    return text;
}

}  // namespace

TextViewConsole::TextViewConsole(QPlainTextEdit& view) : view_(view) {
    view_.setReadOnly(true);
    view_.setUndoRedoEnabled(false);
    view_.setMaximumBlockCount(0);
    view_.setLineWrapMode(QPlainTextEdit::WidgetWidth);
    view_.setFocusPolicy(Qt::NoFocus);
    view_.viewport()->setCursor(Qt::ArrowCursor);
    sinceRepaint_.start();
}

void TextViewConsole::Clear() {
    view_.clear();
}

void TextViewConsole::AppendLine(std::wstring line) {
    const QString text = Visible(line);
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
    if (view_.blockCount() <= linesShownOneByOne ||
        sinceRepaint_.elapsed() >= millisecondsBetweenRepaints) {
        view_.viewport()->repaint();
        sinceRepaint_.restart();
    }
}

}  // namespace zelmo
