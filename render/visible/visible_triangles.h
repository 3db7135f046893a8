#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "render/mesh/mesh_vertex.h"
#include "render/visible/picture_view.h"

namespace zelmo {

struct ProcessModel;

/// Chooses from the meshes of a stack the triangles that a picture needs. The picture has the same
/// bytes as if all were drawn. A triangle is left out where
///   - it is of a lower sheet and the upper sheet of an earlier layer lies exactly on it: the depth
///     test refuses it;
///   - it lies inside an opaque layer, with its surroundings and deep enough, and no translucent
///     layer stands between the two in the stack: from there every way to the eye passes one of
///     that layer's own sheets or its front wall;
///   - it covers the centre of no pixel;
///   - it is of a level part of an opaque layer, for which two large triangles stand.
/// In doubt a triangle stays. Nothing of this touches GL.
class VisibleTriangles {
public:
    /// `model` must have the heights from which its meshes were made, and stay as it is.
    VisibleTriangles(const ProcessModel& model, const PictureView& view);
    ~VisibleTriangles();
    VisibleTriangles(const VisibleTriangles&) = delete;
    VisibleTriangles& operator=(const VisibleTriangles&) = delete;

    /// False if the view is none from in front of the window, or the model not of one grid: then
    /// all of the meshes is to be drawn.
    bool Chosen() const;

    /// The triangles to draw of the layer in this slot, three indices into its vertices each, in
    /// the order of its mesh. Valid until the next call.
    std::span<const std::uint32_t> IndicesOf(std::size_t slot);

    /// The corners of the triangles that stand for level parts of the layer in this slot, three
    /// each. Valid until the next call.
    std::span<const MeshVertex> LevelCornersOf(std::size_t slot);

private:
    struct Choice;
    std::unique_ptr<Choice> choice_;
};

}  // namespace zelmo
