#pragma once

#include <QElapsedTimer>
#include <QPlainTextEdit>

#include "base/log_console.h"

namespace zelmo {

/// The console of the Linux desktop: a text view that keeps every line. A worker's line is a
/// synchronous hop into the user interface thread.
class TextViewConsole : public LogConsole {
public:
    explicit TextViewConsole(QPlainTextEdit& view);

    void Clear();

protected:
    void AppendLine(std::wstring line) override;

private:
    void ShowLine(const QString& text);

    QPlainTextEdit& view_;
    QElapsedTimer sinceRepaint_;
};

}  // namespace zelmo
