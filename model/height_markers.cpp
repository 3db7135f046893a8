#include "model/height_markers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/conversions.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

constexpr std::uint32_t markerColumns = 10;

/// The cover's height at a grid position. Positions are inside the grid unless the window lies so
/// far from the origin that the margins have lost their digits; the nearest cell is taken then.
float CoverHeight(const HeightMarkers& markers, float x, float y) {
    const std::int64_t cells = std::int64_t{markers.columns} * markers.rows;
    if (markers.cover == nullptr || cells <= 0) {
        return 0.0f;
    }
    const std::int64_t cell = std::int64_t{TruncateToI32(y)} * markers.columns + TruncateToI32(x);
    return markers.cover[std::clamp<std::int64_t>(cell, 0, cells - 1)].height;
}

}  // namespace

void InitHeightMarkers(ProcessModel& model) {
    HeightMarkers& markers = model.heightMarkers;
    markers.marginX = model.marginX;
    markers.marginY = model.marginY;
    markers.cover = model.coverMap.data();
    markers.columns = model.gridColumns;
    markers.rows = model.gridRows;
    markers.spacing = model.gridSpacing;

    const float aspect =
        static_cast<float>(model.gridRows - 1) / static_cast<float>(model.gridColumns - 1);
    markers.rowCount = static_cast<std::uint32_t>(std::max(TruncateToI32(aspect * 10.0f), 0));
    markers.pitch = (static_cast<float>(markers.columns) -
                     (markers.marginX + markers.marginX) / markers.spacing) /
                    9.0f;
    markers.vertexCount = markers.rowCount * markerColumns;
    markers.vertices.assign(markers.vertexCount, MarkerVertex{});

    if (model.graphics != nullptr) {
        markers.graphics = model.graphics;
        markers.graphics->CreateMarkerObjects(markers);
    }
}

void UpdateHeightMarkers(HeightMarkers& markers) {
    for (std::uint32_t i = 0; i < markerColumns; ++i) {
        for (std::uint32_t j = 0; j < markers.rowCount; ++j) {
            const float column = static_cast<float>(i);
            const float row = static_cast<float>(j);
            const float x = markers.marginX / markers.spacing + markers.pitch * column;
            const float y = markers.marginY / markers.spacing + markers.pitch * row;
            MarkerVertex& vertex = markers.vertices[j * markerColumns + i];
            vertex = {};
            vertex.position[0] = column * markers.spacing * markers.pitch;
            vertex.position[1] = row * markers.spacing * markers.pitch;
            vertex.position[2] = CoverHeight(markers, x, y);
        }
    }
    if (markers.graphics != nullptr) {
        markers.graphics->UploadMarkers(markers);
    }
}

}  // namespace zelmo
