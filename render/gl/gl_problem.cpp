#include "render/gl/gl_problem.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include "render/gl/offscreen_buffer.h"

namespace zelmo {

namespace {

/// The first error of OpenGL since this was last asked for. Each kind of error is kept by itself,
/// so that a few questions clear them all; without a working context they never end.
GLenum TakeGlError() {
    const GLenum first = glGetError();
    for (int kinds = 0; kinds < 16 && glGetError() != GL_NO_ERROR; ++kinds) {
    }
    return first;
}

}  // namespace

void ForgetGlErrors() {
    TakeGlError();
}

std::string DrawingProblem(const OffscreenBuffer& buffer) {
    std::string problem = buffer.Problem();
    const GLenum error = TakeGlError();
    if (!problem.empty() || error == GL_NO_ERROR) {
        return problem;
    }
    return error == GL_OUT_OF_MEMORY ? "OpenGL has no memory left"
                                     : fmt::format("OpenGL reports error 0x{:04X}", error);
}

}  // namespace zelmo
