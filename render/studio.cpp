#include "render/studio.h"

#include <fmt/format.h>

#include "base/text.h"
#include "render/frame_renderer.h"
#include "render/picture_choice.h"
#include "render/slide/caption.h"
#include "render/slide/slide_picture.h"
#include "render/step_picture.h"

namespace zelmo {

Studio::Studio(const std::filesystem::path& surfaceShader, const std::filesystem::path& pointShader,
               std::optional<HidingRules> hidingRules)
    : surfaceShader_(surfaceShader), pointShader_(pointShader), hidingRules_(hidingRules) {
    if (!surfaceShader_.IsUsable()) {
        faultyShaders_.push_back({surfaceShader, surfaceShader_.Errors()});
    }
    if (!pointShader_.IsUsable()) {
        faultyShaders_.push_back({pointShader, pointShader_.Errors()});
    }
}

StepImage Studio::TakePicture(const ProcessModel& model, const ProcessStep& step,
                              std::int32_t imageNumber, std::string* problem) {
    return TakePicture(model, step, imageNumber, {}, problem);
}

StepImage Studio::TakePicture(const ProcessModel& model, const ProcessStep& step,
                              std::int32_t imageNumber, const PictureChoice& choice,
                              std::string* problem) {
    const PictureTools tools{surfaceShader_, pointShader_, textFont_, hidingRules_};
    if (choice == PictureChoice{}) {
        return TakeStepPicture(model, step, uploads_, tools, imageNumber, camera_, problem);
    }
    return TakeSlidePicture(model, step, uploads_, tools, imageNumber, choice, problem);
}

StepImage Studio::DrawCaption(const std::string& text, std::int32_t width, std::int32_t height) {
    return zelmo::DrawCaption(text, width, height, textFont_);
}

std::string WhyUnusable(const Studio& studio) {
    if (studio.FaultyShaders().empty()) {
        return {};
    }
    const auto& [path, reasons] = studio.FaultyShaders().front();
    const std::string more =
        reasons.size() < 2 ? "" : fmt::format(" (and {} more)", reasons.size() - 1);
    return fmt::format("the shader file {} cannot be used: {}{}", Utf8FromWide(PathText(path)),
                       Utf8FromWide(reasons.at(0)), more);
}

}  // namespace zelmo
