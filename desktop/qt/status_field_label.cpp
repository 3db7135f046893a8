#include "desktop/qt/status_field_label.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

namespace zelmo {

StatusFieldLabel::StatusFieldLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setContentsMargins(4, 0, 4, 0);
}

QString StatusFieldLabel::ShownText() const {
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

void StatusFieldLabel::paintEvent(QPaintEvent*) noexcept {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                          isEnabled(), ShownText(), foregroundRole());
}

bool StatusFieldLabel::event(QEvent* event) noexcept {
    if (event->type() == QEvent::ToolTip && ShownText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           Qt::convertFromPlainText(text(), Qt::WhiteSpaceNormal), this);
        return true;
    }
    return QLabel::event(event);
}

}  // namespace zelmo
