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

// A row of the table is ZELMO_FORWARD(<number of arguments>, <where it is found>, <result>, <name>,
// <types of the arguments>...).

#define ZELMO_PARAMETERS_0()
#define ZELMO_PARAMETERS_1(A) A a
#define ZELMO_PARAMETERS_2(A, B) A a, B b
#define ZELMO_PARAMETERS_3(A, B, C) A a, B b, C c
#define ZELMO_PARAMETERS_4(A, B, C, D) A a, B b, C c, D d
#define ZELMO_PARAMETERS_5(A, B, C, D, E) A a, B b, C c, D d, E e
#define ZELMO_PARAMETERS_7(A, B, C, D, E, F, G) A a, B b, C c, D d, E e, F f, G g

#define ZELMO_ARGUMENTS_0
#define ZELMO_ARGUMENTS_1 a
#define ZELMO_ARGUMENTS_2 a, b
#define ZELMO_ARGUMENTS_3 a, b, c
#define ZELMO_ARGUMENTS_4 a, b, c, d
#define ZELMO_ARGUMENTS_5 a, b, c, d, e
#define ZELMO_ARGUMENTS_7 a, b, c, d, e, f, g

#define ZELMO_FORWARD(count, Find, Result, name, ...)    \
    Result name(ZELMO_PARAMETERS_##count(__VA_ARGS__)) { \
        static const auto entry = Find(#name, &name);    \
        return entry(ZELMO_ARGUMENTS_##count);           \
    }

extern "C" {

// clang-format off

// EGL
ZELMO_FORWARD(1, FindEgl, __eglMustCastToProperFunctionPointerType, eglGetProcAddress, const char*)
ZELMO_FORWARD(1, FindEgl, EGLBoolean, eglBindAPI, EGLenum)
ZELMO_FORWARD(5, FindEgl, EGLBoolean, eglChooseConfig, EGLDisplay, const EGLint*, EGLConfig*, EGLint, EGLint*)
ZELMO_FORWARD(4, FindEgl, EGLContext, eglCreateContext, EGLDisplay, EGLConfig, EGLContext, const EGLint*)
ZELMO_FORWARD(2, FindEgl, EGLBoolean, eglDestroyContext, EGLDisplay, EGLContext)
ZELMO_FORWARD(0, FindEgl, EGLContext, eglGetCurrentContext)
ZELMO_FORWARD(1, FindEgl, EGLDisplay, eglGetDisplay, EGLNativeDisplayType)
ZELMO_FORWARD(0, FindEgl, EGLint, eglGetError)
ZELMO_FORWARD(3, FindEgl, EGLBoolean, eglInitialize, EGLDisplay, EGLint*, EGLint*)
ZELMO_FORWARD(4, FindEgl, EGLBoolean, eglMakeCurrent, EGLDisplay, EGLSurface, EGLSurface, EGLContext)
ZELMO_FORWARD(2, FindEgl, const char*, eglQueryString, EGLDisplay, EGLint)
ZELMO_FORWARD(1, FindEgl, EGLBoolean, eglTerminate, EGLDisplay)

// OpenGL 1.1
ZELMO_FORWARD(1, FindGl, void, glBegin, GLenum)
ZELMO_FORWARD(7, FindGl, void, glBitmap, GLsizei, GLsizei, GLfloat, GLfloat, GLfloat, GLfloat, const GLubyte*)
ZELMO_FORWARD(2, FindGl, void, glBlendFunc, GLenum, GLenum)
ZELMO_FORWARD(3, FindGl, void, glCallLists, GLsizei, GLenum, const void*)
ZELMO_FORWARD(1, FindGl, void, glClear, GLbitfield)
ZELMO_FORWARD(4, FindGl, void, glClearColor, GLclampf, GLclampf, GLclampf, GLclampf)
ZELMO_FORWARD(4, FindGl, void, glColor4f, GLfloat, GLfloat, GLfloat, GLfloat)
ZELMO_FORWARD(2, FindGl, void, glDeleteLists, GLuint, GLsizei)
ZELMO_FORWARD(1, FindGl, void, glDisable, GLenum)
ZELMO_FORWARD(3, FindGl, void, glDrawArrays, GLenum, GLint, GLsizei)
ZELMO_FORWARD(4, FindGl, void, glDrawElements, GLenum, GLsizei, GLenum, const void*)
ZELMO_FORWARD(1, FindGl, void, glEnable, GLenum)
ZELMO_FORWARD(0, FindGl, void, glEnd)
ZELMO_FORWARD(0, FindGl, void, glEndList)
ZELMO_FORWARD(0, FindGl, void, glFlush)
ZELMO_FORWARD(1, FindGl, GLuint, glGenLists, GLsizei)
ZELMO_FORWARD(0, FindGl, GLenum, glGetError)
ZELMO_FORWARD(2, FindGl, void, glGetIntegerv, GLenum, GLint*)
ZELMO_FORWARD(1, FindGl, const GLubyte*, glGetString, GLenum)
ZELMO_FORWARD(1, FindGl, GLboolean, glIsEnabled, GLenum)
ZELMO_FORWARD(1, FindGl, GLboolean, glIsList, GLuint)
ZELMO_FORWARD(1, FindGl, void, glListBase, GLuint)
ZELMO_FORWARD(2, FindGl, void, glNewList, GLuint, GLenum)
ZELMO_FORWARD(2, FindGl, void, glPixelStorei, GLenum, GLint)
ZELMO_FORWARD(0, FindGl, void, glPopClientAttrib)
ZELMO_FORWARD(1, FindGl, void, glPushClientAttrib, GLbitfield)
ZELMO_FORWARD(7, FindGl, void, glReadPixels, GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, void*)
ZELMO_FORWARD(2, FindGl, void, glVertex2f, GLfloat, GLfloat)
ZELMO_FORWARD(3, FindGl, void, glVertex3f, GLfloat, GLfloat, GLfloat)
ZELMO_FORWARD(4, FindGl, void, glViewport, GLint, GLint, GLsizei, GLsizei)

// clang-format on

}  // extern "C"
