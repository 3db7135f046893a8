#include <GL/glew.h>
#include <windows.h>

#include <string>

#include "render/gl/gl_context.h"
#include "render/gl/gl_requirements.h"

namespace zelmo {

namespace {

constexpr wchar_t className[] = L"Zelmo Hidden Window Class";

/// A context of a window that is never shown. To be destroyed on the thread that made it.
class WglContext final : public GlContext {
public:
    WglContext() = default;
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
        if (window_ != nullptr) {
            DestroyWindow(window_);
        }
    }

    /// Makes window and context and leaves the context current. Returns the reason on failure.
    std::string Create() {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof windowClass;
        windowClass.style = CS_OWNDC;
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = className;
        RegisterClassExW(&windowClass);
        window_ = CreateWindowExW(0, className, L"", WS_POPUP, 0, 0, 16, 16, nullptr, nullptr,
                                  windowClass.hInstance, nullptr);
        deviceContext_ = window_ != nullptr ? GetDC(window_) : nullptr;
        if (deviceContext_ == nullptr) {
            return "no window can be made (is there a display?)";
        }
        PIXELFORMATDESCRIPTOR format{};
        format.nSize = sizeof format;
        format.nVersion = 1;
        format.dwFlags = PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL |
                         PFD_GENERIC_ACCELERATED | PFD_SUPPORT_COMPOSITION;
        format.iPixelType = PFD_TYPE_RGBA;
        format.cColorBits = 32;
        format.cDepthBits = 32;
        format.cStencilBits = 8;
        const int chosen = ChoosePixelFormat(deviceContext_, &format);
        if (chosen == 0 || SetPixelFormat(deviceContext_, chosen, &format) == FALSE) {
            return "the display has no pixel format for it";
        }
        context_ = wglCreateContext(deviceContext_);
        if (context_ == nullptr || !MakeCurrent()) {
            return "no context can be made";
        }
        return "";
    }

    bool MakeCurrent() override { return wglMakeCurrent(deviceContext_, context_) != FALSE; }
    void Release() override { wglMakeCurrent(nullptr, nullptr); }
    bool IsCurrent() const override {
        return context_ != nullptr && wglGetCurrentContext() == context_;
    }

private:
    HWND window_ = nullptr;
    HDC deviceContext_ = nullptr;
    HGLRC context_ = nullptr;
};

}  // namespace

std::unique_ptr<GlContext> CreateOffscreenGlContext(std::string& error) {
    auto context = std::make_unique<WglContext>();
    std::string problem = context->Create();
    if (problem.empty()) {
        problem = LoadGlEntryPoints();
    }
    if (!problem.empty()) {
        error = "no OpenGL: " + problem;
        return nullptr;
    }
    InitGlState();
    error.clear();
    return context;
}

}  // namespace zelmo
