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

UploadedMesh Upload(const LayerMesh& mesh) {
    return {mesh.vertices, mesh.indices};
}

UploadedLayer UploadLayer(const Layer& layer, const ShownWindow& window, const WindowSides& sides) {
    UploadedLayer uploaded{layer.version,
                           Upload(MakeLayerMesh(layer, window.marginCols, window.marginRows))};
    if (sides.Any()) {
        uploaded.walls = Upload(MakeSideWalls(layer, window.marginCols, window.marginRows, sides));
    }
    return uploaded;
}

const UploadedLayer* Find(const StackUploads& uploads, const Layer& layer) {
    const auto found =
        std::find_if(uploads.layers.begin(), uploads.layers.end(),
                     [&layer](const UploadedLayer& uploaded) { return IsOf(uploaded, layer); });
    return found == uploads.layers.end() ? nullptr : &*found;
}

}  // namespace

void UpdateUploads(StackUploads& uploads, const ProcessModel& model) {
    UpdateUploads(uploads, model.stack, model.grid, {});
}

void UpdateUploads(StackUploads& uploads, const Stack& stack, const Grid& grid,
                   const WindowSides& sides) {
    if (uploads.sides != sides) {
        uploads.layers.clear();
        uploads.sides = sides;
    }
    const auto isGone = [&stack](const UploadedLayer& uploaded) {
        return std::none_of(stack.layers.begin(), stack.layers.end(),
                            [&uploaded](const std::unique_ptr<Layer>& layer) {
                                return layer != nullptr && IsOf(uploaded, *layer);
                            });
    };
    std::erase_if(uploads.layers, isGone);
    const ShownWindow window = FindShownWindow(grid);
    for (const std::unique_ptr<Layer>& layer : stack.layers) {
        if (layer != nullptr && FindMesh(uploads, *layer) == nullptr) {
            uploads.layers.push_back(UploadLayer(*layer, window, sides));
        }
    }
    uploads.markers = SampleHeightMarkers(grid, stack.coverMap);
    uploads.markerVertices.Upload(std::as_bytes(std::span(uploads.markers.vertices)));
}

const UploadedMesh* FindMesh(const StackUploads& uploads, const Layer& layer) {
    const UploadedLayer* const found = Find(uploads, layer);
    return found != nullptr ? &found->mesh : nullptr;
}

const UploadedMesh* FindWalls(const StackUploads& uploads, const Layer& layer) {
    const UploadedLayer* const found = Find(uploads, layer);
    return found != nullptr && found->walls ? &*found->walls : nullptr;
}

}  // namespace zelmo
