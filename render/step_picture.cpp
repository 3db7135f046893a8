#include "render/step_picture.h"

#include <GL/glew.h>
#include <fmt/format.h>

#include <stdexcept>

#include "model/process_model.h"
#include "render/gl/gl_problem.h"
#include "render/gl/offscreen_buffer.h"
#include "render/highest_surface.h"
#include "render/stack_uploads.h"

namespace zelmo {

namespace {

constexpr std::int32_t pictureWidth = 1920;

std::unique_ptr<Camera> MakeCamera(const ProcessModel& model, float top) {
    return std::make_unique<Camera>(static_cast<double>(model.settings.windowWidth),
                                    static_cast<double>(model.settings.windowHeight),
                                    static_cast<double>(top),
                                    static_cast<double>(model.settings.cameraAngle));
}

/// An image of the right size, without a name.
StepImage MakeImage(std::int32_t width, std::int32_t height) {
    if (height < 0) {
        throw std::runtime_error(fmt::format("A picture cannot be {} pixels high", height));
    }
    StepImage image;
    image.width = width;
    image.height = height;
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                        bytesPerPixel);
    return image;
}

void ReadPixels(StepImage& image) {
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, image.width, image.height, GL_BGRA, GL_UNSIGNED_BYTE, image.pixels.data());
}

}  // namespace

StepImage TakeStepPicture(const ProcessModel& model, const ProcessStep& step, StackUploads& uploads,
                          const PictureTools& tools, std::int32_t imageNumber,
                          std::unique_ptr<Camera>& camera, std::string* problem) {
    if (problem != nullptr) {
        ForgetGlErrors();
    }
    UpdateUploads(uploads, model);
    camera = MakeCamera(model, HighestSurface(model.stack.coverMap));

    const std::int32_t height =
        PictureHeight(*camera, model.settings.showLegend, model.stack.layerCount);
    StepImage image = MakeImage(pictureWidth, height);
    image.name = StepImageName(imageNumber, step.description);
    const OffscreenBuffer buffer(image.width, image.height);
    RenderFrame(model, uploads, *camera, tools, image.width, image.height);
    ReadPixels(image);
    if (problem != nullptr) {
        *problem = DrawingProblem(buffer);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return image;
}

}  // namespace zelmo
