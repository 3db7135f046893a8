#include "render/mesh/update_meshes.h"

#include <cstdint>
#include <limits>
#include <memory>

#include "base/conversions.h"
#include "model/height_markers.h"
#include "model/process_model.h"
#include "render/mesh/layer_mesh.h"

namespace zelmo {

float UpdateMeshes(ProcessModel& model) {
    float highest = std::numeric_limits<float>::min();
    for (const CoverCell& cell : model.coverMap) {
        if (cell.height > highest) {
            highest = cell.height;
        }
    }
    const std::int32_t marginCols = TruncateToI32(model.marginX / model.gridSpacing);
    const std::int32_t marginRows = TruncateToI32(model.marginY / model.gridSpacing);
    std::int32_t layerCount = 0;
    for (std::unique_ptr<Layer>& layer : model.layers) {
        if (layer && layer->meshDirty) {
            BuildLayerMesh(*layer, marginCols, marginRows);
            layer->meshDirty = false;
            if (layer->indexCount == 0) {
                DestroyLayer(layer);
            }
        }
        layerCount += layer ? 1 : 0;
    }
    UpdateHeightMarkers(model.heightMarkers);
    model.layerCount = layerCount;
    return highest;
}

}  // namespace zelmo
