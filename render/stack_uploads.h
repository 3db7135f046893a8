#pragma once

#include <memory>
#include <vector>

#include "render/gl/uploaded_mesh.h"
#include "render/height_markers.h"

namespace zelmo {

struct Layer;
struct ProcessModel;
struct SurfaceVersion;

/// A layer's mesh in the GL context, and the surfaces that it was made of.
struct UploadedLayer {
    std::weak_ptr<const SurfaceVersion> version;
    UploadedMesh mesh;
};

/// What the GL context holds of a model: the meshes of its layers and its height markers. To be
/// made, used and destroyed while the context is current.
struct StackUploads {
    std::vector<UploadedLayer> layers;
    HeightMarkers markers;
    UploadedVertices markerVertices{3, 3, 1};
};

/// Uploads what is new or has changed since the last time; what the model does not have (any more)
/// goes, be it another model than the last one.
void UpdateUploads(StackUploads& uploads, const ProcessModel& model);

/// The mesh of these very surfaces of the layer, or null.
const UploadedMesh* FindMesh(const StackUploads& uploads, const Layer& layer);

}  // namespace zelmo
