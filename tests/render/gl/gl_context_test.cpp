#include <GL/glew.h>

#include <string_view>
#include <thread>

#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

TEST(GlContext, IsCurrentWhereItWasMadeAndHasFixedFunctions) {
    EXPECT_TRUE(TestContext().IsCurrent());
    const Canvas canvas(8, 8);
    TakeGlErrors();
    glBegin(GL_QUADS);
    glEnd();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_TRUE(GLEW_VERSION_3_3);
}

TEST(GlContext, HasTheStateThatThePicturesRelyOn) {
    EXPECT_TRUE(glIsEnabled(GL_PROGRAM_POINT_SIZE));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    GLint source = 0;
    GLint destination = 0;
    glGetIntegerv(GL_BLEND_SRC_RGB, &source);
    glGetIntegerv(GL_BLEND_DST_RGB, &destination);
    EXPECT_EQ(source, GL_SRC_ALPHA);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);
}

TEST(GlContext, IsHandedToAnotherThreadAndBack) {
    GlContext& context = TestContext();
    context.Release();
    EXPECT_FALSE(context.IsCurrent());
    bool current = false;
    GLuint buffer = 0;
    std::thread worker([&] {
        current = context.MakeCurrent() && context.IsCurrent();
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        context.Release();
    });
    worker.join();
    EXPECT_TRUE(current);
    ASSERT_TRUE(context.MakeCurrent());
    EXPECT_TRUE(context.IsCurrent());
    EXPECT_TRUE(glIsBuffer(buffer));
    glDeleteBuffers(1, &buffer);
}

TEST(OffscreenBuffer, LeavesNothingBehind) {
    const int before = CountGlObjects();
    GLint name = 0;
    {
        const OffscreenBuffer buffer(30, 20);
        EXPECT_EQ(buffer.Problem(), "");
        glGetIntegerv(GL_FRAMEBUFFER_BINDING, &name);
        EXPECT_NE(name, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    EXPECT_FALSE(glIsFramebuffer(static_cast<GLuint>(name)));
    EXPECT_EQ(CountGlObjects(), before);
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &name);
    EXPECT_EQ(name, 0);
}

TEST(OffscreenBuffer, HasColourWithAlphaAndDeepDepth) {
    const OffscreenBuffer buffer(30, 20);
    GLint colour = 0;
    GLint depth = 0;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &colour);
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT,
                                          GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, &depth);
    GLint format = 0;
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(colour));
    glGetRenderbufferParameteriv(GL_RENDERBUFFER, GL_RENDERBUFFER_INTERNAL_FORMAT, &format);
    EXPECT_EQ(format, GL_RGBA8);
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(depth));
    glGetRenderbufferParameteriv(GL_RENDERBUFFER, GL_RENDERBUFFER_INTERNAL_FORMAT, &format);
    EXPECT_EQ(format, GL_DEPTH_COMPONENT24);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
}

TEST(OffscreenBuffer, TellsThatItIsTooLarge) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &limit);
    const OffscreenBuffer buffer(1920, limit + 1);
    EXPECT_EQ(buffer.Problem(), "1920 by " + std::to_string(limit + 1) +
                                    " pixels are more than the " + std::to_string(limit) +
                                    " that OpenGL can draw");
    TakeGlErrors();
}

}  // namespace
}  // namespace zelmo
