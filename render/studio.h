#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pictures/step_image.h"
#include "render/camera.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/stack_uploads.h"
#include "render/visible/hiding_rules.h"

namespace zelmo {

struct PictureChoice;
struct ProcessModel;
struct ProcessStep;

/// A shader file that cannot be used.
struct FaultyShader {
    std::filesystem::path path;
    std::vector<std::wstring> reasons;  ///< lines for the user
};

/// What pictures are made with, for the program's life: the shaders, the fonts, what the GL context
/// holds of the stack, and the camera. To be made, used and destroyed while the context is current.
class Studio {
public:
    /// The rules are those of every picture, for comparisons: without any, whole meshes are drawn.
    Studio(const std::filesystem::path& surfaceShader, const std::filesystem::path& pointShader,
           std::optional<HidingRules> hidingRules = HidingRules{});

    /// The shaders that failed. Pictures lack what they draw, and are complete otherwise.
    const std::vector<FaultyShader>& FaultyShaders() const { return faultyShaders_; }

    /// Why the pictures so far have no texts; empty where they have them.
    const std::string& FontProblem() const { return textFont_.Problem(); }

    /// Takes the picture of a finished step (TakeStepPicture).
    StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                          std::int32_t imageNumber, std::string* problem = nullptr);

    /// The same as it is chosen: the usual picture, or one for a slide (TakeSlidePicture).
    StepImage TakePicture(const ProcessModel& model, const ProcessStep& step,
                          std::int32_t imageNumber, const PictureChoice& choice,
                          std::string* problem = nullptr);

    /// A line of text on white, shortened where it is too long for a picture of this size. Its
    /// glyphs are its bytes.
    StepImage DrawCaption(const std::string& text, std::int32_t width, std::int32_t height);

private:
    StackUploads uploads_;
    TextFont textFont_;
    ShaderProgram surfaceShader_;
    ShaderProgram pointShader_;
    std::vector<FaultyShader> faultyShaders_;
    std::unique_ptr<Camera> camera_;
    std::optional<HidingRules> hidingRules_;
};

/// Why pictures lack their layers: the first shader that failed, with its reasons. Empty where none
/// did.
std::string WhyUnusable(const Studio& studio);

}  // namespace zelmo
