#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "pictures/step_image.h"

namespace zelmo {

class LogConsole;
struct ProcessModel;
struct ProcessStep;

/// Makes the pictures of finished steps, for the program's life. The main window draws through one
/// that has a GL context; its logic runs just as well with one that has none.
class PictureMaker {
public:
    virtual ~PictureMaker() = default;

    /// Takes the picture of a finished step.
    /// `imageNumber` and the step's description make its name.
    virtual StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                                  std::int32_t imageNumber) = 0;
};

/// The one that draws with GL. The context must be current here and at every use, also at the end.
/// A shader that cannot be loaded is reported to `console`, and at the first picture a missing
/// font; pictures then lack what it draws.
std::unique_ptr<PictureMaker> CreateGlPictureMaker(const std::filesystem::path& surfaceShaderPath,
                                                   const std::filesystem::path& pointShaderPath,
                                                   LogConsole* console);

}  // namespace zelmo
