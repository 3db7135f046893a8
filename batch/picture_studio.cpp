#include "batch/picture_studio.h"

#include <fmt/format.h>

#include "base/text.h"
#include "batch/consoles.h"
#include "batch/exit_status.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/step_picture.h"

namespace zelmo {

namespace {

std::unique_ptr<GlContext> OpenContext() {
    std::string error;
    std::unique_ptr<GlContext> context = CreateOffscreenGlContext(error);
    if (!context) {
        throw BatchFailure{ExitStatus::Picture, "no picture can be made: " + error};
    }
    return context;
}

/// The desktop draws what it can with a faulty shader; pictures that lack their layers are of no
/// use to a script.
std::unique_ptr<ShaderProgram> LoadShader(const std::filesystem::path& path) {
    RememberingConsole console(nullptr);
    auto shader = std::make_unique<ShaderProgram>(path, &console);
    if (!shader->IsUsable() || !console.Lines().empty()) {
        throw BatchFailure{ExitStatus::Picture,
                           fmt::format("the shader file {} cannot be used: {}",
                                       Utf8FromWide(PathText(path)), console.FirstError())};
    }
    return shader;
}

}  // namespace

PictureStudio::PictureStudio(const std::filesystem::path& surfaceShader,
                             const std::filesystem::path& pointShader)
    : context_(OpenContext()),
      surfaceShader_(LoadShader(surfaceShader)),
      pointShader_(LoadShader(pointShader)) {}

PictureStudio::~PictureStudio() = default;

StepImage PictureStudio::TakePicture(const ProcessModel& model, const ProcessStep& step,
                                     std::int32_t imageNumber, std::string& problem) {
    const PictureTools tools{*surfaceShader_, *pointShader_, textFont_};
    return TakeStepPicture(model, step, uploads_, tools, imageNumber, camera_, &problem);
}

}  // namespace zelmo
