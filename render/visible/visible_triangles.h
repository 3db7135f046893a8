#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "render/mesh/mesh_vector.h"
#include "render/visible/chosen_triangles.h"
#include "render/visible/hiding_rules.h"
#include "render/visible/picture_view.h"

// The face of this room. It chooses from the meshes of a stack the triangles that a picture needs:
// the picture has the same bytes as if all were drawn with blending. In doubt a triangle stays.
// Nothing of this touches OpenGL.

namespace zelmo {

struct Grid;
struct Stack;

/// Chooses by these rules. The stack must stay as it is for as long as the choice is used. Nothing
/// if the view is none from in front of the window, the stack not of one grid, or a height no
/// number: then whole meshes are to be drawn.
std::optional<ChosenTriangles> ChooseTriangles(const Stack& stack, const Grid& grid,
                                               const PictureView& view,
                                               const HidingRules& rules = {});

/// Replaces `indices` by those of the triangles that were chosen of the layer in this slot of the
/// stack: indices into the vertices of the layer's mesh, three a triangle, in the order of the
/// mesh.
void FindDrawnTriangles(const ChosenTriangles& chosen, std::size_t slot,
                        BareVector<std::uint32_t>& indices);

}  // namespace zelmo
