#include "desktop/win32/render_window.h"

#include "base/debug_trace.h"
#include "render/gl/window_context_wgl.h"

namespace zelmo {

LRESULT RenderWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        case WM_PAINT:
            Paint();
            return 0;
        default:
            return DefWindowProcW(hwnd, message, wParam, lParam);
    }
}

void RenderWindow::Paint() {
    DebugTrace("Handling RenderWindow WM_PAINT");
    if (context_ == nullptr || !context_->IsCurrent()) {
        // A worker has the context; the end of its step repaints.
        DebugTrace("RenderWindow WM_PAINT with out GL context");
    } else if (pictures_.images.empty()) {
        PaintWhite();
    } else {
        PaintPicture();
    }
    ValidateRect(hwnd, nullptr);
}

void RenderWindow::PaintWhite() {
    RECT area = {};
    GetUpdateRect(hwnd, &area, FALSE);
    const HDC deviceContext = GetDC(hwnd);
    FillRect(deviceContext, &area, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    ReleaseDC(hwnd, deviceContext);
}

void RenderWindow::PaintPicture() {
    RECT client = {};
    GetClientRect(hwnd, &client);
    const FittedPicture fitted =
        FitPicture(pictures_.Current(), client.right - client.left, client.bottom - client.top);
    context_->Show(fitted.image, fitted.x, fitted.y);
}

}  // namespace zelmo
