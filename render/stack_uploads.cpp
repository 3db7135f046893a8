#include "render/stack_uploads.h"

#include <algorithm>
#include <span>

#include "model/grid/shown_window.h"
#include "model/process_model.h"
#include "render/mesh/layer_mesh.h"

namespace zelmo {

namespace {

bool IsOf(const UploadedLayer& uploaded, const Layer& layer) {
    return layer.version != nullptr && uploaded.version.lock() == layer.version;
}

UploadedMesh UploadMesh(const Layer& layer, const ShownWindow& window) {
    const LayerMesh mesh = MakeLayerMesh(layer, window.marginCols, window.marginRows);
    return {mesh.vertices, mesh.indices};
}

}  // namespace

void UpdateUploads(StackUploads& uploads, const ProcessModel& model) {
    const auto isGone = [&model](const UploadedLayer& uploaded) {
        return std::none_of(model.stack.layers.begin(), model.stack.layers.end(),
                            [&uploaded](const std::unique_ptr<Layer>& layer) {
                                return layer != nullptr && IsOf(uploaded, *layer);
                            });
    };
    std::erase_if(uploads.layers, isGone);
    const ShownWindow window = FindShownWindow(model.grid);
    for (const std::unique_ptr<Layer>& layer : model.stack.layers) {
        if (layer != nullptr && FindMesh(uploads, *layer) == nullptr) {
            uploads.layers.push_back({layer->version, UploadMesh(*layer, window)});
        }
    }
    uploads.markers = SampleHeightMarkers(model.grid, model.stack.coverMap);
    uploads.markerVertices.Upload(std::as_bytes(std::span(uploads.markers.vertices)));
}

const UploadedMesh* FindMesh(const StackUploads& uploads, const Layer& layer) {
    const auto found =
        std::find_if(uploads.layers.begin(), uploads.layers.end(),
                     [&layer](const UploadedLayer& uploaded) { return IsOf(uploaded, layer); });
    return found == uploads.layers.end() ? nullptr : &found->mesh;
}

}  // namespace zelmo
