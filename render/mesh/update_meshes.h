#pragma once

namespace zelmo {

struct ProcessModel;

/// Rebuilds the meshes of changed layers, deletes layers with nothing to show, refreshes the height
/// markers and `layerCount`. Returns the height of the highest point of the cover, always positive.
float UpdateMeshes(ProcessModel& model);

}  // namespace zelmo
