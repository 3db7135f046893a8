#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "pictures/step_image.h"
#include "render/picture_choice.h"

namespace zelmo {

struct ProcessModel;

/// A picture, or why there is none.
struct LonePicture {
    StepImage image;
    std::string problem;  ///< one line of UTF-8; empty with a picture
};

/// Takes the picture of a stack after the step with this index, with a context and a studio of its
/// own, on any thread that has no context. Several threads wait for each other. Throws
/// std::bad_alloc.
LonePicture TakeLonePicture(const std::filesystem::path& surfaceShader,
                            const std::filesystem::path& pointShader, const ProcessModel& model,
                            std::size_t index, const PictureChoice& choice);

}  // namespace zelmo
