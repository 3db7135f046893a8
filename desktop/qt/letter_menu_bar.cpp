#include "desktop/qt/letter_menu_bar.h"

#include <QAction>
#include <QKeyEvent>
#include <QKeySequence>
#include <QShortcutEvent>

namespace zelmo {

// The toolkit's own bar takes entries with the same letter in turn, also those that are disabled.
bool LetterMenuBar::event(QEvent* event) noexcept {
    if (event->type() != QEvent::Shortcut) {
        return QMenuBar::event(event);
    }
    if (QAction* entry = EnabledEntry(static_cast<QShortcutEvent*>(event)->key())) {
        entry->trigger();
    }
    return true;
}

void LetterMenuBar::keyPressEvent(QKeyEvent* event) noexcept {
    QAction* entry = event->modifiers() == Qt::NoModifier
                         ? EnabledEntry(QKeySequence(Qt::ALT | Qt::Key(event->key())))
                         : nullptr;
    if (entry == nullptr) {
        QMenuBar::keyPressEvent(event);
        return;
    }
    QKeyEvent leave(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QMenuBar::keyPressEvent(&leave);  // gives the keyboard back to the window
    entry->trigger();
}

QAction* LetterMenuBar::EnabledEntry(const QKeySequence& letterWithAlt) const {
    for (QAction* entry : actions()) {
        if (entry->isEnabled() && QKeySequence::mnemonic(entry->text()) == letterWithAlt) {
            return entry;
        }
    }
    return nullptr;
}

}  // namespace zelmo
