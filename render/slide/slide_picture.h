#pragma once

#include <cstdint>
#include <string>

#include "pictures/step_image.h"
#include "render/frame_renderer.h"
#include "render/picture_choice.h"

namespace zelmo {

struct ProcessModel;
struct ProcessStep;

/// What a picture of this stack has to have room for.
PictureRoom RoomOf(const ProcessModel& model, const PictureChoice& choice);

/// Takes the picture of a finished step as it was chosen. Otherwise as TakeStepPicture does
/// (render/step_picture.h). A picture that is too large for OpenGL is drawn in parts.
StepImage TakeSlidePicture(const ProcessModel& model, const ProcessStep& step,
                           StackUploads& uploads, const PictureTools& tools,
                           std::int32_t imageNumber, const PictureChoice& choice,
                           std::string* problem = nullptr);

}  // namespace zelmo
