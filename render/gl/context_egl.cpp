#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <string>
#include <string_view>

#include "render/gl/gl_context.h"
#include "render/gl/gl_library_linux.h"
#include "render/gl/gl_requirements.h"

namespace zelmo {

namespace {

/// A context without a surface, and the display that it belongs to.
class EglContext final : public GlContext {
public:
    explicit EglContext(EGLDisplay display) : display_(display) {}
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    ~EglContext() override {
        if (IsCurrent()) {
            Release();
        }
        if (context_ != EGL_NO_CONTEXT) {
            eglDestroyContext(display_, context_);
        }
        // The display is one for the whole process and stays: its end would take other contexts
        // with it, and unload a driver that leaves memory behind.
    }

    /// Makes the context and leaves it current. False if the display has none of the right kind.
    bool Create() {
        const std::array<EGLint, 5> wanted{EGL_SURFACE_TYPE, EGL_DONT_CARE, EGL_RENDERABLE_TYPE,
                                           EGL_OPENGL_BIT, EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE ||
            eglChooseConfig(display_, wanted.data(), &config, 1, &count) == EGL_FALSE ||
            count == 0) {
            return false;
        }
        // No attributes: the newest version that still has all of the old ones.
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
        return context_ != EGL_NO_CONTEXT && MakeCurrent();
    }

    bool MakeCurrent() override {
        // The API is a choice of each thread.
        return eglBindAPI(EGL_OPENGL_API) == EGL_TRUE &&
               eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_TRUE;
    }

    void Release() override {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }

    bool IsCurrent() const override {
        return context_ != EGL_NO_CONTEXT && eglGetCurrentContext() == context_;
    }

private:
    EGLDisplay display_ = EGL_NO_DISPLAY;
    EGLContext context_ = EGL_NO_CONTEXT;
};

EGLDisplay GetPlatformDisplay(EGLenum platform, void* native) {
    const auto get = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return get != nullptr ? get(platform, native, nullptr) : EGL_NO_DISPLAY;
}

EGLDisplay SurfacelessDisplay() {
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (extensions == nullptr ||
        std::string_view(extensions).find("EGL_MESA_platform_surfaceless") ==
            std::string_view::npos) {
        return EGL_NO_DISPLAY;
    }
    return GetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY);
}

EGLDisplay DefaultDeviceDisplay() {
    const auto queryDevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    if (queryDevices == nullptr || queryDevices(1, &device, &count) == EGL_FALSE || count == 0) {
        return EGL_NO_DISPLAY;
    }
    return GetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device);
}

EGLDisplay DefaultDisplay() {
    return eglGetDisplay(EGL_DEFAULT_DISPLAY);
}

}  // namespace

std::unique_ptr<GlContext> CreateOffscreenGlContext(std::string& error) {
    const std::string missing = LoadGlLibrary();
    if (!missing.empty()) {
        error = "no OpenGL: " + missing;
        return nullptr;
    }
    error = "no OpenGL: EGL has no display that works without a window";
    for (const auto getDisplay : {SurfacelessDisplay, DefaultDeviceDisplay, DefaultDisplay}) {
        const EGLDisplay display = getDisplay();
        if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
            continue;
        }
        auto context = std::make_unique<EglContext>(display);
        if (!context->Create()) {
            error = "no OpenGL: EGL has no context for desktop OpenGL";
            continue;
        }
        const std::string problem = LoadGlEntryPoints();
        if (!problem.empty()) {
            error = "no OpenGL: " + problem;
            continue;
        }
        InitGlState();
        error.clear();
        return context;
    }
    return nullptr;
}

}  // namespace zelmo
