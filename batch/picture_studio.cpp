#include "batch/picture_studio.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "base/log_console.h"
#include "base/text.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/step_picture.h"

namespace zelmo {

namespace {

/// Keeps its lines: what is wrong with a shader.
class ShaderConsole : public LogConsole {
public:
    std::vector<std::string> lines;

protected:
    void AppendLine(std::wstring line) override { lines.push_back(Utf8FromWide(line)); }
};

/// The first line, and how many more there are.
std::string FirstOf(const std::vector<std::string>& lines) {
    if (lines.size() < 2) {
        return lines.empty() ? std::string() : lines[0];
    }
    return fmt::format("{} (and {} more)", lines[0], lines.size() - 1);
}

/// The desktop draws what it can with a faulty shader; pictures that lack their layers are of no
/// use to a script. Null, with the reason in `problem`, for such a one.
std::unique_ptr<ShaderProgram> LoadShader(const std::filesystem::path& path, std::string& problem) {
    ShaderConsole console;
    auto shader = std::make_unique<ShaderProgram>(path, &console);
    if (shader->IsUsable() && console.lines.empty()) {
        return shader;
    }
    problem = fmt::format("the shader file {} cannot be used: {}", Utf8FromWide(PathText(path)),
                          FirstOf(console.lines));
    return nullptr;
}

}  // namespace

PictureStudio::PictureStudio(std::unique_ptr<GlContext> context,
                             std::unique_ptr<ShaderProgram> surfaceShader,
                             std::unique_ptr<ShaderProgram> pointShader)
    : context_(std::move(context)),
      surfaceShader_(std::move(surfaceShader)),
      pointShader_(std::move(pointShader)) {}

PictureStudio::~PictureStudio() = default;

StepImage PictureStudio::TakePicture(const ProcessModel& model, const ProcessStep& step,
                                     std::int32_t imageNumber, std::string& problem) {
    const PictureTools tools{*surfaceShader_, *pointShader_, textFont_};
    return TakeStepPicture(model, step, uploads_, tools, imageNumber, camera_, &problem);
}

std::unique_ptr<PictureStudio> OpenPictureStudio(const std::filesystem::path& surfaceShader,
                                                 const std::filesystem::path& pointShader,
                                                 std::string& problem) {
    std::string error;
    std::unique_ptr<GlContext> context = CreateOffscreenGlContext(error);
    if (!context) {
        problem = "no picture can be made: " + error;
        return nullptr;
    }
    auto surface = LoadShader(surfaceShader, problem);
    auto point = surface ? LoadShader(pointShader, problem) : nullptr;
    if (!point) {
        return nullptr;
    }
    return std::make_unique<PictureStudio>(std::move(context), std::move(surface),
                                           std::move(point));
}

}  // namespace zelmo
