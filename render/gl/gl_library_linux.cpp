// The entry points of EGL and OpenGL 1.1 that the program and GLEW call by name. They forward to
// libEGL, which is loaded at the first call: the program starts and does all that needs no picture
// on a machine that has no OpenGL. Whatever is newer than OpenGL 1.1 comes through GLEW.

#include <EGL/egl.h>
#include <GL/glew.h>
#include <dlfcn.h>
#include <stdlib.h>

#include "render/gl/gl_library_linux.h"

namespace zelmo {

namespace {

struct Library {
    void* handle = nullptr;
    std::string error;
};

Library OpenLibrary() {
    Library library;
    // What goes wrong is told once, by the program; the user may still ask for the drivers' words.
    setenv("EGL_LOG_LEVEL", "fatal", 0);
    library.handle = dlopen("libEGL.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library.handle == nullptr) {
        const char* reason = dlerror();
        library.error = reason != nullptr ? reason : "libEGL.so.1 cannot be loaded";
    }
    return library;
}

/// Loaded once and never unloaded: drivers do not survive that.
const Library& EglLibrary() {
    static const Library library = OpenLibrary();
    return library;
}

template <typename Result, typename... Arguments>
Result DoNothing(Arguments...) {
    return Result();
}

template <typename Result, typename... Arguments>
auto* OrNothing(void* entry, Result (*)(Arguments...)) {
    using Function = Result(Arguments...);
    return entry != nullptr ? reinterpret_cast<Function*>(entry) : &DoNothing<Result, Arguments...>;
}

/// The function of EGL with this name, of the type of `forward`; one that does nothing and returns
/// 0 if there is none.
template <typename Function>
Function* FindEgl(const char* name, Function* forward) {
    const Library& library = EglLibrary();
    return OrNothing(library.handle != nullptr ? dlsym(library.handle, name) : nullptr, forward);
}

template <typename Function>
Function* FindGl(const char* name, Function* forward) {
    return OrNothing(reinterpret_cast<void*>(eglGetProcAddress(name)), forward);
}

}  // namespace

std::string LoadGlLibrary() {
    return EglLibrary().error;
}

}  // namespace zelmo

using zelmo::FindEgl;
using zelmo::FindGl;

extern "C" {

// EGL

__eglMustCastToProperFunctionPointerType eglGetProcAddress(const char* name) {
    static const auto entry = FindEgl("eglGetProcAddress", &eglGetProcAddress);
    return entry(name);
}

EGLBoolean eglBindAPI(EGLenum api) {
    static const auto entry = FindEgl("eglBindAPI", &eglBindAPI);
    return entry(api);
}

EGLBoolean eglChooseConfig(EGLDisplay display, const EGLint* attributes, EGLConfig* configs,
                           EGLint size, EGLint* count) {
    static const auto entry = FindEgl("eglChooseConfig", &eglChooseConfig);
    return entry(display, attributes, configs, size, count);
}

EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext share,
                            const EGLint* attributes) {
    static const auto entry = FindEgl("eglCreateContext", &eglCreateContext);
    return entry(display, config, share, attributes);
}

EGLBoolean eglDestroyContext(EGLDisplay display, EGLContext context) {
    static const auto entry = FindEgl("eglDestroyContext", &eglDestroyContext);
    return entry(display, context);
}

EGLContext eglGetCurrentContext() {
    static const auto entry = FindEgl("eglGetCurrentContext", &eglGetCurrentContext);
    return entry();
}

EGLDisplay eglGetDisplay(EGLNativeDisplayType native) {
    static const auto entry = FindEgl("eglGetDisplay", &eglGetDisplay);
    return entry(native);
}

EGLint eglGetError() {
    static const auto entry = FindEgl("eglGetError", &eglGetError);
    return entry();
}

EGLBoolean eglInitialize(EGLDisplay display, EGLint* major, EGLint* minor) {
    static const auto entry = FindEgl("eglInitialize", &eglInitialize);
    return entry(display, major, minor);
}

EGLBoolean eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read,
                          EGLContext context) {
    static const auto entry = FindEgl("eglMakeCurrent", &eglMakeCurrent);
    return entry(display, draw, read, context);
}

const char* eglQueryString(EGLDisplay display, EGLint name) {
    static const auto entry = FindEgl("eglQueryString", &eglQueryString);
    return entry(display, name);
}

EGLBoolean eglTerminate(EGLDisplay display) {
    static const auto entry = FindEgl("eglTerminate", &eglTerminate);
    return entry(display);
}

// OpenGL 1.1

void glBegin(GLenum mode) {
    static const auto entry = FindGl("glBegin", &glBegin);
    entry(mode);
}

void glBitmap(GLsizei width, GLsizei height, GLfloat xOrigin, GLfloat yOrigin, GLfloat xMove,
              GLfloat yMove, const GLubyte* bitmap) {
    static const auto entry = FindGl("glBitmap", &glBitmap);
    entry(width, height, xOrigin, yOrigin, xMove, yMove, bitmap);
}

void glBlendFunc(GLenum source, GLenum destination) {
    static const auto entry = FindGl("glBlendFunc", &glBlendFunc);
    entry(source, destination);
}

void glCallLists(GLsizei count, GLenum type, const void* lists) {
    static const auto entry = FindGl("glCallLists", &glCallLists);
    entry(count, type, lists);
}

void glClear(GLbitfield mask) {
    static const auto entry = FindGl("glClear", &glClear);
    entry(mask);
}

void glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha) {
    static const auto entry = FindGl("glClearColor", &glClearColor);
    entry(red, green, blue, alpha);
}

void glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    static const auto entry = FindGl("glColor4f", &glColor4f);
    entry(red, green, blue, alpha);
}

void glDeleteLists(GLuint list, GLsizei range) {
    static const auto entry = FindGl("glDeleteLists", &glDeleteLists);
    entry(list, range);
}

void glDisable(GLenum capability) {
    static const auto entry = FindGl("glDisable", &glDisable);
    entry(capability);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    static const auto entry = FindGl("glDrawArrays", &glDrawArrays);
    entry(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    static const auto entry = FindGl("glDrawElements", &glDrawElements);
    entry(mode, count, type, indices);
}

void glEnable(GLenum capability) {
    static const auto entry = FindGl("glEnable", &glEnable);
    entry(capability);
}

void glEnd() {
    static const auto entry = FindGl("glEnd", &glEnd);
    entry();
}

void glEndList() {
    static const auto entry = FindGl("glEndList", &glEndList);
    entry();
}

void glFlush() {
    static const auto entry = FindGl("glFlush", &glFlush);
    entry();
}

GLuint glGenLists(GLsizei range) {
    static const auto entry = FindGl("glGenLists", &glGenLists);
    return entry(range);
}

GLenum glGetError() {
    static const auto entry = FindGl("glGetError", &glGetError);
    return entry();
}

void glGetIntegerv(GLenum name, GLint* values) {
    static const auto entry = FindGl("glGetIntegerv", &glGetIntegerv);
    entry(name, values);
}

const GLubyte* glGetString(GLenum name) {
    static const auto entry = FindGl("glGetString", &glGetString);
    return entry(name);
}

GLboolean glIsEnabled(GLenum capability) {
    static const auto entry = FindGl("glIsEnabled", &glIsEnabled);
    return entry(capability);
}

GLboolean glIsList(GLuint list) {
    static const auto entry = FindGl("glIsList", &glIsList);
    return entry(list);
}

void glListBase(GLuint base) {
    static const auto entry = FindGl("glListBase", &glListBase);
    entry(base);
}

void glNewList(GLuint list, GLenum mode) {
    static const auto entry = FindGl("glNewList", &glNewList);
    entry(list, mode);
}

void glPixelStorei(GLenum name, GLint value) {
    static const auto entry = FindGl("glPixelStorei", &glPixelStorei);
    entry(name, value);
}

void glPopClientAttrib() {
    static const auto entry = FindGl("glPopClientAttrib", &glPopClientAttrib);
    entry();
}

void glPushClientAttrib(GLbitfield mask) {
    static const auto entry = FindGl("glPushClientAttrib", &glPushClientAttrib);
    entry(mask);
}

void glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                  void* pixels) {
    static const auto entry = FindGl("glReadPixels", &glReadPixels);
    entry(x, y, width, height, format, type, pixels);
}

void glVertex2f(GLfloat x, GLfloat y) {
    static const auto entry = FindGl("glVertex2f", &glVertex2f);
    entry(x, y);
}

void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    static const auto entry = FindGl("glViewport", &glViewport);
    entry(x, y, width, height);
}

}  // extern "C"
