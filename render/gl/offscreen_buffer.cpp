#include "render/gl/offscreen_buffer.h"

#include <GL/glew.h>
#include <fmt/format.h>

namespace zelmo {

namespace {

GLuint MakeRenderbuffer(GLenum format, std::int32_t width, std::int32_t height) {
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    glBindRenderbuffer(GL_RENDERBUFFER, name);
    glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    return name;
}

}  // namespace

OffscreenBuffer::OffscreenBuffer(std::int32_t width, std::int32_t height)
    : width_(width), height_(height) {
    glGenFramebuffers(1, &framebuffer_);
    colorBuffer_ = MakeRenderbuffer(GL_RGBA8, width, height);
    depthBuffer_ = MakeRenderbuffer(GL_DEPTH_COMPONENT24, width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colorBuffer_);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depthBuffer_);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
}

OffscreenBuffer::~OffscreenBuffer() {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    glDeleteRenderbuffers(1, &colorBuffer_);
    glDeleteRenderbuffers(1, &depthBuffer_);
    glDeleteFramebuffers(1, &framebuffer_);
}

std::string OffscreenBuffer::Problem() const {
    const GLenum status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    if (status == GL_FRAMEBUFFER_COMPLETE) {
        return "";
    }
    GLint limit = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &limit);
    if (width_ > limit || height_ > limit) {
        return fmt::format("{} by {} pixels are more than the {} that OpenGL can draw", width_,
                           height_, limit);
    }
    return fmt::format("OpenGL cannot draw {} by {} pixels (status 0x{:04X})", width_, height_,
                       status);
}

}  // namespace zelmo
