#include "render/slide/caption.h"

#include <GL/glew.h>

#include <cstddef>

#include "render/gl/offscreen_buffer.h"
#include "render/picture_texts.h"
#include "render/slide/slide_canvas.h"

namespace zelmo {

namespace {

constexpr double lineShare = 0.66;  ///< of the height
constexpr std::int32_t weight = 400;

}  // namespace

StepImage DrawCaption(const std::string& text, std::int32_t width, std::int32_t height,
                      TextFont& fonts) {
    const OffscreenBuffer buffer(width, height);
    glViewport(0, 0, width, height);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glUseProgram(0);
    glDisable(GL_DEPTH_TEST);
    SlideCanvas canvas({0, 0, width, height}, 1.0, fonts);
    const GlFont font = canvas.Font(lineShare * height, weight);
    if (font.averageWidth > 0) {
        const auto room = static_cast<std::int32_t>(width / font.averageWidth);
        canvas.CentredText(ShortenedText(text, room), {width * 0.5, height * 0.5}, font);
    }
    glEnable(GL_DEPTH_TEST);
    StepImage image;
    image.width = width;
    image.height = height;
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, image.pixels.data());
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return image;
}

}  // namespace zelmo
