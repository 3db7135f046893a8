#include <GL/glew.h>

#include "desktop/win32/render_window.h"

#include "base/debug_trace.h"
#include "render/gl/gl_context.h"

namespace zelmo {

namespace {

PIXELFORMATDESCRIPTOR PixelFormat() {
    PIXELFORMATDESCRIPTOR format = {};
    format.nSize = sizeof format;
    format.nVersion = 1;
    format.dwFlags = PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL |
                     PFD_GENERIC_ACCELERATED | PFD_SUPPORT_COMPOSITION;
    format.iPixelType = PFD_TYPE_RGBA;
    format.cColorBits = 32;
    format.cDepthBits = 32;
    format.cStencilBits = 8;
    format.iLayerType = PFD_MAIN_PLANE;
    return format;
}

}  // namespace

RenderWindow::~RenderWindow() {
    if (deviceContext_ != nullptr) {
        ReleaseDC(hwnd, deviceContext_);
    }
}

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

bool RenderWindow::CreateGlContext() {
    deviceContext_ = GetDC(hwnd);
    const PIXELFORMATDESCRIPTOR wanted = PixelFormat();
    const int format = ChoosePixelFormat(deviceContext_, &wanted);
    if (format == 0 || !SetPixelFormat(deviceContext_, format, &wanted)) {
        return false;
    }
    const HGLRC context = wglCreateContext(deviceContext_);
    if (context == nullptr) {
        return false;
    }
    if (!wglMakeCurrent(deviceContext_, context) || glewInit() != GLEW_OK) {
        wglMakeCurrent(nullptr, nullptr);
        wglDeleteContext(context);
        return false;
    }
    InitGlState();
    glContext_ = context;
    return true;
}

void RenderWindow::MakeContextCurrent() {
    wglMakeCurrent(deviceContext_, glContext_);
}

void RenderWindow::GiveUpContext() {
    wglMakeCurrent(deviceContext_, nullptr);
}

void RenderWindow::Paint() {
    DebugTrace("Handling RenderWindow WM_PAINT");
    if (wglGetCurrentContext() == nullptr) {
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
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glUseProgram(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glWindowPos2i(fitted.x, fitted.y);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glDrawPixels(fitted.image.width, fitted.image.height, GL_BGRA, GL_UNSIGNED_BYTE,
                 fitted.image.pixels.data());
    SwapBuffers(deviceContext_);
}

}  // namespace zelmo
