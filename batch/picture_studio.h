#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "pictures/step_image.h"
#include "render/gl/gl_context.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/stack_uploads.h"

namespace zelmo {

struct Camera;
struct ProcessModel;
struct ProcessStep;

/// What pictures are made with.
class PictureStudio {
public:
    PictureStudio(std::unique_ptr<GlContext> context, std::unique_ptr<ShaderProgram> surfaceShader,
                  std::unique_ptr<ShaderProgram> pointShader);
    ~PictureStudio();

    /// Takes the picture of a finished step. `problem` receives the reason if it could not be
    /// drawn, else an empty text.
    StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                          std::int32_t imageNumber, std::string& problem);

private:
    std::unique_ptr<GlContext> context_;  // first: everything else goes while it is current
    StackUploads uploads_;
    TextFont textFont_;
    std::unique_ptr<ShaderProgram> surfaceShader_;
    std::unique_ptr<ShaderProgram> pointShader_;
    std::unique_ptr<Camera> camera_;
};

/// Sets up GL without a window, and the shaders. Null, with the reason in `problem`, if no picture
/// could be made.
std::unique_ptr<PictureStudio> OpenPictureStudio(const std::filesystem::path& surfaceShader,
                                                 const std::filesystem::path& pointShader,
                                                 std::string& problem);

}  // namespace zelmo
