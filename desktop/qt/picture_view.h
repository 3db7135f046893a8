#pragma once

#include <QWidget>

#include "desktop/picture_list.h"

namespace zelmo {

class Platform;

/// Shows the picture that is browsed to, scaled to fit into the middle of a white area. While a
/// worker has the GL context, what was shown last stays.
class PictureView : public QWidget {
public:
    PictureView(QWidget* parent, const PictureList& pictures, const Platform& platform);

protected:
    void paintEvent(QPaintEvent* event) noexcept override;

private:
    const PictureList& pictures_;
    const Platform& platform_;
    StepImage shown_;
};

}  // namespace zelmo
