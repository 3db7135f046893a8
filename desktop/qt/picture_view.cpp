#include "desktop/qt/picture_view.h"

#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstring>

#include "base/debug_trace.h"
#include "desktop/platform.h"

namespace zelmo {

namespace {

/// An image of the picture's pixels: blue, green, red and alpha in memory, top row first.
QImage ImageOf(const StepImage& picture) {
    QImage image(picture.width, picture.height, QImage::Format_ARGB32);
    const auto rowBytes = static_cast<std::size_t>(picture.width) * 4;
    for (int row = 0; row < picture.height; ++row) {
        const auto source = static_cast<std::size_t>(picture.height - 1 - row);
        std::memcpy(image.scanLine(row), picture.pixels.data() + source * rowBytes, rowBytes);
    }
    return image;
}

}  // namespace

PictureView::PictureView(QWidget* parent, const PictureList& pictures, const Platform& platform)
    : QWidget(parent), pictures_(pictures), platform_(platform) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureView::paintEvent(QPaintEvent*) noexcept {
    DebugTrace("Painting the picture");
    if (!platform_.HasContext()) {
        DebugTrace("Painting the last picture without GL context");
    } else if (!pictures_.images.empty()) {
        shown_ = pictures_.Current();
    }
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (shown_.width < 1 || shown_.height < 1) {
        return;
    }
    // Pixels of the display, so that the picture is sharp at every display scale.
    const double scale = devicePixelRatioF();
    const int deviceWidth = static_cast<int>(std::lround(width() * scale));
    const int deviceHeight = static_cast<int>(std::lround(height() * scale));
    const FittedPicture fitted = FitPicture(shown_, deviceWidth, deviceHeight);
    QImage image = ImageOf(fitted.image);
    image.setDevicePixelRatio(scale);
    const int top = deviceHeight - fitted.y - fitted.image.height;
    painter.drawImage(QPointF(fitted.x / scale, top / scale), image);
}

}  // namespace zelmo
