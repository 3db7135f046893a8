#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "pictures/step_image.h"
#include "render/camera.h"
#include "render/frame_renderer.h"

namespace zelmo {

struct ProcessStep;

/// Takes the picture of a finished step: brings the uploads up to date, replaces `camera`, draws a
/// frame 1920 pixels wide off screen and reads it back. `imageNumber` and the step's description
/// make the picture's name. The GL context must be current.
/// OpenGL may be unable to draw it, for its size or for want of memory; the picture's contents are
/// then undefined. Where `problem` is given it receives the reason, or an empty text.
StepImage TakeStepPicture(const ProcessModel& model, const ProcessStep& step, StackUploads& uploads,
                          const PictureTools& tools, std::int32_t imageNumber,
                          std::unique_ptr<Camera>& camera, std::string* problem = nullptr);

}  // namespace zelmo
