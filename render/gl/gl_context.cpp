#include "render/gl/gl_context.h"

#include <GL/glew.h>

#include "render/gl/gl_requirements.h"

namespace zelmo {

void InitGlState() {
    glEnable(GL_PROGRAM_POINT_SIZE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_DEPTH_TEST);
    // A compatibility context tells a fragment of a point where in the point it is only with this
    // one on; the round markers need it.
    glEnable(GL_POINT_SPRITE);
}

std::string LoadGlEntryPoints() {
    const GLenum result = glewInit();
    if (result != GLEW_OK) {
        const GLubyte* text = glewGetErrorString(result);
        return std::string("the entry points of OpenGL cannot be loaded: ") +
               reinterpret_cast<const char*>(text);
    }
    const GLubyte* version = glGetString(GL_VERSION);
    if (version == nullptr) {
        return "the OpenGL driver does not work";
    }
    if (!GLEW_VERSION_3_3) {
        return std::string("OpenGL 3.3 is needed, the driver has only ") +
               reinterpret_cast<const char*>(version);
    }
    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    if ((profile & GL_CONTEXT_CORE_PROFILE_BIT) != 0) {
        return "the OpenGL driver has no compatibility profile";
    }
    return "";
}

}  // namespace zelmo
