#include "render/height_markers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/conversions.h"
#include "model/grid/grid.h"
#include "model/stack.h"

namespace zelmo {

namespace {

constexpr std::uint32_t markerColumns = 10;

/// The cover's height at a grid position. Positions are inside the grid unless the window lies so
/// far from the origin that the margins have lost their digits; the nearest cell is taken then.
float CoverHeight(const Grid& grid, std::span<const CoverCell> coverMap, float x, float y) {
    const std::int64_t cells = std::int64_t{grid.columns} * grid.rows;
    if (coverMap.empty() || cells <= 0) {
        return 0.0f;
    }
    const std::int64_t cell = std::int64_t{TruncateToI32(y)} * grid.columns + TruncateToI32(x);
    return coverMap[static_cast<std::size_t>(std::clamp<std::int64_t>(cell, 0, cells - 1))].height;
}

/// Counts the markers and finds their distance.
HeightMarkers LayOutMarkers(const Grid& grid) {
    HeightMarkers markers;
    const float aspect = static_cast<float>(grid.rows - 1) / static_cast<float>(grid.columns - 1);
    markers.rowCount = static_cast<std::uint32_t>(std::max(TruncateToI32(aspect * 10.0f), 0));
    markers.pitch =
        (static_cast<float>(grid.columns) - (grid.marginX + grid.marginX) / grid.spacing) / 9.0f;
    markers.vertices.resize(std::size_t{markers.rowCount} * markerColumns);
    return markers;
}

}  // namespace

HeightMarkers SampleHeightMarkers(const Grid& grid, std::span<const CoverCell> coverMap) {
    HeightMarkers markers = LayOutMarkers(grid);
    for (std::uint32_t i = 0; i < markerColumns; ++i) {
        for (std::uint32_t j = 0; j < markers.rowCount; ++j) {
            const float column = static_cast<float>(i);
            const float row = static_cast<float>(j);
            const float x = grid.marginX / grid.spacing + markers.pitch * column;
            const float y = grid.marginY / grid.spacing + markers.pitch * row;
            MarkerVertex& vertex = markers.vertices[j * markerColumns + i];
            vertex.position[0] = column * grid.spacing * markers.pitch;
            vertex.position[1] = row * grid.spacing * markers.pitch;
            vertex.position[2] = CoverHeight(grid, coverMap, x, y);
        }
    }
    return markers;
}

}  // namespace zelmo
