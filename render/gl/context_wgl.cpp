#include <GL/glew.h>
#include <windows.h>

#include <memory>
#include <string>
#include <utility>

#include "render/gl/gl_context.h"
#include "render/gl/gl_requirements.h"
#include "render/gl/window_context_wgl.h"

namespace zelmo {

namespace {

constexpr wchar_t className[] = L"Zelmo Hidden Window Class";

PIXELFORMATDESCRIPTOR WantedPixelFormat() {
    PIXELFORMATDESCRIPTOR format{};
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

struct WindowDeleter {
    using pointer = HWND;
    void operator()(HWND window) const { DestroyWindow(window); }
};
using OwnedWindow = std::unique_ptr<HWND, WindowDeleter>;

/// A window that is never shown, or null.
OwnedWindow CreateHiddenWindow() {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_OWNDC;
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    RegisterClassExW(&windowClass);
    return OwnedWindow(CreateWindowExW(0, className, L"", WS_POPUP, 0, 0, 16, 16, nullptr, nullptr,
                                       windowClass.hInstance, nullptr));
}

/// A context of a window, with one device context for its life. To be destroyed on the thread that
/// made it.
class WglContext final : public WindowGlContext {
public:
    explicit WglContext(HWND window) : window_(window) {}
    explicit WglContext(OwnedWindow window) : owned_(std::move(window)), window_(owned_.get()) {}
    WglContext(const WglContext&) = delete;
    WglContext& operator=(const WglContext&) = delete;

    ~WglContext() override {
        if (context_ != nullptr) {
            if (IsCurrent()) {
                Release();
            }
            wglDeleteContext(context_);
        }
        if (deviceContext_ != nullptr) {
            ReleaseDC(window_, deviceContext_);
        }
    }

    /// Makes the context, leaves it current, and loads and checks what it can do. Returns the
    /// reason on failure.
    std::string Create() {
        deviceContext_ = window_ != nullptr ? GetDC(window_) : nullptr;
        if (deviceContext_ == nullptr) {
            return "no window can be made (is there a display?)";
        }
        const PIXELFORMATDESCRIPTOR wanted = WantedPixelFormat();
        const int format = ChoosePixelFormat(deviceContext_, &wanted);
        if (format == 0 || SetPixelFormat(deviceContext_, format, &wanted) == FALSE) {
            return "the display has no pixel format for it";
        }
        context_ = wglCreateContext(deviceContext_);
        if (context_ == nullptr || !MakeCurrent()) {
            return "no context can be made";
        }
        std::string problem = LoadGlEntryPoints();
        if (problem.empty()) {
            InitGlState();
        }
        return problem;
    }

    bool MakeCurrent() override { return wglMakeCurrent(deviceContext_, context_) != FALSE; }
    void Release() override { wglMakeCurrent(nullptr, nullptr); }
    bool IsCurrent() const override {
        return context_ != nullptr && wglGetCurrentContext() == context_;
    }

    void Show(const StepImage& picture, int x, int y) override {
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        glUseProgram(0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glWindowPos2i(x, y);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
        glDrawPixels(picture.width, picture.height, GL_BGRA, GL_UNSIGNED_BYTE,
                     picture.pixels.data());
        SwapBuffers(deviceContext_);
    }

private:
    OwnedWindow owned_;  ///< null where the window is the user's
    HWND window_;
    HDC deviceContext_ = nullptr;
    HGLRC context_ = nullptr;
};

/// The context if it can be made, else null with the reason in `error`.
std::unique_ptr<WglContext> Created(std::unique_ptr<WglContext> context, std::string& error) {
    const std::string problem = context->Create();
    error = problem.empty() ? "" : "no OpenGL: " + problem;
    return problem.empty() ? std::move(context) : nullptr;
}

}  // namespace

std::unique_ptr<GlContext> CreateOffscreenGlContext(std::string& error) {
    return Created(std::make_unique<WglContext>(CreateHiddenWindow()), error);
}

std::unique_ptr<WindowGlContext> CreateWindowGlContext(HWND window, std::string& error) {
    return Created(std::make_unique<WglContext>(window), error);
}

}  // namespace zelmo
