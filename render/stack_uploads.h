#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "render/gl/uploaded_mesh.h"
#include "render/height_markers.h"
#include "render/mesh/side_walls.h"

namespace zelmo {

struct Grid;
struct Layer;
struct ProcessModel;
struct Stack;
struct SurfaceVersion;

/// A layer's mesh in the GL context, and the surfaces that it was made of.
struct UploadedLayer {
    std::weak_ptr<const SurfaceVersion> version;
    UploadedMesh mesh;
    std::optional<UploadedMesh> walls{};  ///< at the uploads' sides
};

/// What the GL context holds of a model: the meshes of its layers and its height markers. To be
/// made, used and destroyed while the context is current.
struct StackUploads {
    std::vector<UploadedLayer> layers;
    WindowSides sides;  ///< that have walls
    HeightMarkers markers;
    UploadedVertices markerVertices{3, 3, 1};
};

/// Uploads what is new or has changed since the last time; what the model does not have (any more)
/// goes, be it another model than the last one.
void UpdateUploads(StackUploads& uploads, const ProcessModel& model);

/// The same for a stack on a grid, with walls at these sides of the window.
void UpdateUploads(StackUploads& uploads, const Stack& stack, const Grid& grid,
                   const WindowSides& sides);

/// The mesh of these very surfaces of the layer, or null.
const UploadedMesh* FindMesh(const StackUploads& uploads, const Layer& layer);

/// Their walls at the sides, or null where there are none.
const UploadedMesh* FindWalls(const StackUploads& uploads, const Layer& layer);

}  // namespace zelmo
