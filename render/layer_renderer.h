#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "render/mesh/mesh_vector.h"
#include "render/visible/hiding_rules.h"
#include "render/visible/picture_view.h"
#include "render/visible/visible_triangles.h"

namespace zelmo {

struct Grid;
struct Layer;
struct Stack;
struct StackUploads;
class ShaderProgram;

/// Draws the layers of a stack in their order, for a picture as a whole or part by part. What the
/// picture needs of them is chosen once. The stack, its uploads and the shader must stay.
class LayerRenderer {
public:
    /// `view` is the whole picture's. Without rules, whole meshes are drawn, all with blending.
    LayerRenderer(const Stack& stack, const Grid& grid, const StackUploads& uploads,
                  const ShaderProgram& shader, const PictureView& view,
                  const std::optional<HidingRules>& rules);

    /// Draws into the viewport as it is, with the shader, which must be current and have its
    /// transform and light. Draws nothing with a shader that failed: fixed functions would take its
    /// place. `isLast` where nothing of the picture is drawn after this.
    void Draw(bool isLast = true);

private:
    void DrawLayer(std::size_t slot, const Layer& layer, bool isLast);
    std::span<const std::uint32_t> FindIndices(std::size_t slot, bool isLast);

    const Stack& stack_;
    const StackUploads& uploads_;
    const ShaderProgram& shader_;
    bool drawsAll_;  ///< with blending, whatever the layers let through
    std::optional<ChosenTriangles> chosen_;
    std::vector<BareVector<std::uint32_t>> kept_;  ///< by slot, for the parts that follow
    BareVector<std::uint32_t> indices_;            ///< of the layer at hand
};

}  // namespace zelmo
