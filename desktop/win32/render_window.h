#pragma once

#include "desktop/picture_list.h"
#include "desktop/win32/base_window.h"

namespace zelmo {

/// The upper part of the main window: owns the program's one GL context and shows the picture that
/// is browsed to, scaled to fit. It never draws the model itself.
class RenderWindow final : public BaseWindow<RenderWindow> {
public:
    /// `pictures` are shown, not owned.
    explicit RenderWindow(const PictureList& pictures) : pictures_(pictures) {}
    ~RenderWindow();

    const wchar_t* ClassName() const override { return L"Render Window Class"; }
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    /// Sets the pixel format, makes the context current on this thread, loads the entry points and
    /// sets the GL state. False if any of it fails.
    bool CreateGlContext();
    void MakeContextCurrent();
    void GiveUpContext();

private:
    void Paint();
    void PaintWhite();
    void PaintPicture();

    const PictureList& pictures_;
    HDC deviceContext_ = nullptr;  ///< one for the window's life
    HGLRC glContext_ = nullptr;
};

}  // namespace zelmo
