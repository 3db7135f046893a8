#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "render/mesh/matrix.h"
#include "render/visible/hiding_rules.h"

namespace zelmo {

struct Camera;
struct ProcessModel;
struct StackUploads;
class ShaderProgram;
class TextFont;

/// What pictures are drawn with, for the program's life.
struct PictureTools {
    const ShaderProgram& surfaceShader;
    const ShaderProgram& pointShader;
    TextFont& textFont;
    /// What need not be drawn. Without any, whole meshes are drawn, all with blending.
    std::optional<HidingRules> hidingRules = HidingRules{};
    /// Pixels across what is drawn at once, at most. Larger pictures for slides come in parts.
    std::int32_t largestPart = 8192;
    /// The same of a viewport. What reaches beyond it is cut off, and colours may be wrong there.
    std::int32_t largestViewport = 32768;
};

/// Makes the shader of the layers current, with a transform and the light over a window of this
/// width in micrometres, for an eye that has `viewRight` to its right, of length 1.
void UseSurfaceShader(const ShaderProgram& shader, const Matrix4& transform, float windowWidth,
                      const std::array<float, 2>& viewRight);

/// Draws the complete picture of a model into the framebuffer that is bound, `width` by `height`
/// pixels: white background, the layers in stack order, height markers, width label, legend. The
/// uploads are those of the model as it is, and the GL state as InitGlState left it.
void RenderFrame(const ProcessModel& model, const StackUploads& uploads, const Camera& camera,
                 const PictureTools& tools, std::int32_t width, std::int32_t height);

}  // namespace zelmo
