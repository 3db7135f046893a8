// The plain kernels under the names of the fast ones, to build a batch program that runs on them:
// what a whole run is measured against. The linker takes the first definition of a name.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "model/cover_map.h"
#include "model/disc/disc_filter.h"
#include "model/grid/grid.h"
#include "model/grid/neighbour_table.h"
#include "model/mask/mask.h"
#include "model/offset/surface_offset.h"
#include "render/mesh/layer_mesh.h"
#include "render/visible/visible_triangles.h"
#include "tests/plain/cover_map_plain.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/plain/mask_plain.h"
#include "tests/plain/mesh_plain.h"
#include "tests/plain/neighbour_table_plain.h"
#include "tests/plain/surface_offset_plain.h"

namespace zelmo {

void BuildNeighbourTable(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                         float spacing) {
    BuildNeighbourTablePlain(table, rows, cols, spacing);
}

std::vector<GridOffset> SelectDiscOffsets(const Grid& grid, float radius) {
    return SelectDiscOffsetsPlain(grid, radius);
}

std::vector<GridOffset> SelectLeavingOffsets(const Grid& grid, float radius) {
    return SelectLeavingOffsetsPlain(grid, radius);
}

void OffsetSurface(const Grid& grid, std::span<float> out, std::span<const float> heights,
                   float distance, float lateral) {
    OffsetSurfacePlain(grid, out, heights, distance, lateral);
}

void SmoothLayerTop(const Grid& grid, Layer& layer, float radius) {
    SmoothLayerTopPlain(grid, layer, radius);
}

double RasteriseMask(const Grid& grid, std::span<const MaskPolygon> polygons,
                     std::span<std::uint8_t> rawMask, std::span<const MaskLayer> mask,
                     bool maskDark) {
    return RasteriseMaskPlain(grid, polygons, rawMask, mask, maskDark);
}

void BlurMask(const Grid& grid, std::span<std::uint8_t> mask, std::span<const std::uint8_t> rawMask,
              float radius) {
    BlurMaskPlain(grid, mask, rawMask, radius);
}

void MaskEdgeDistance(const Grid& grid, std::span<float> edgeDistance,
                      std::span<const std::uint8_t> mask) {
    MaskEdgeDistancePlain(grid, edgeDistance, mask);
}

void UpdateCoverMap(Stack& stack, const Grid& grid) {
    UpdateCoverMapPlain(stack, grid);
}

LayerMesh MakeLayerMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    return MakeLayerMeshPlain(layer, marginCols, marginRows);
}

std::optional<ChosenTriangles> ChooseTriangles(const Stack&, const Grid&, const PictureView&,
                                               const HidingRules&) {
    return std::nullopt;
}

}  // namespace zelmo
