#pragma once

#include <QMenuBar>

class QKeySequence;

namespace zelmo {

/// A menu bar without drop-downs whose entries may share a letter: Alt with the letter, or the
/// letter after Alt, chooses the first enabled one of them at once.
class LetterMenuBar : public QMenuBar {
public:
    using QMenuBar::QMenuBar;

protected:
    // An exception ends the program: none may pass through the toolkit.
    bool event(QEvent* event) noexcept override;
    void keyPressEvent(QKeyEvent* event) noexcept override;

private:
    QAction* EnabledEntry(const QKeySequence& letterWithAlt) const;
};

}  // namespace zelmo
