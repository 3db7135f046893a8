#pragma once

#include "desktop/picture_list.h"
#include "desktop/win32/base_window.h"

namespace zelmo {

class WindowGlContext;

/// The upper part of the main window: shows the picture that is browsed to, scaled to fit. It never
/// draws the model itself.
class RenderWindow final : public BaseWindow<RenderWindow> {
public:
    /// `pictures` are shown, not owned.
    explicit RenderWindow(const PictureList& pictures) : pictures_(pictures) {}

    const wchar_t* ClassName() const override { return L"Render Window Class"; }
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// The context of this window, not owned; without one nothing is painted.
    void ShowWith(WindowGlContext* context) { context_ = context; }

private:
    void Paint();
    void PaintWhite();
    void PaintPicture();

    const PictureList& pictures_;
    WindowGlContext* context_ = nullptr;
};

}  // namespace zelmo
