#pragma once

#include <cstdint>
#include <memory>

#include "render/camera.h"
#include "shell/step_image.h"

namespace zelmo {

class ShaderProgram;
class TextFont;
struct ProcessModel;
struct ProcessStep;

/// What pictures are drawn with, for the program's life.
struct PictureTools {
    const ShaderProgram& surfaceShader;
    const ShaderProgram& pointShader;
    TextFont& textFont;
};

/// Takes the picture of a finished step: brings the meshes up to date, replaces `camera`, draws a
/// frame 1920 pixels wide off screen and reads it back. `imageNumber` and the step's description
/// make the picture's name. The GL context must be current.
StepImage TakeStepPicture(ProcessModel& model, const ProcessStep& step, const PictureTools& tools,
                          std::int32_t imageNumber, std::unique_ptr<Camera>& camera);

}  // namespace zelmo
