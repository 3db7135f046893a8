#pragma once

#include <QLabel>

namespace zelmo {

/// A field of the status bar. A text that is too long for it loses its middle, and the whole of it
/// is shown when the pointer rests there.
class StatusFieldLabel : public QLabel {
public:
    explicit StatusFieldLabel(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) noexcept override;
    bool event(QEvent* event) noexcept override;

private:
    QString ShownText() const;
};

}  // namespace zelmo
