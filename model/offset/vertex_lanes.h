#pragma once

#include <cstddef>
#include <cstdint>

#include "base/lanes.h"

// The vertices of a surface, row by row. All rows are padded (base/padded_rows.h).

namespace zelmo {

/// A row of a height field and its neighbours; `below` and `above` are null at the grid's edge.
struct SurfaceRow {
    const float* below = nullptr;
    const float* here = nullptr;
    const float* above = nullptr;
    std::int32_t row = 0;
    std::int32_t cols = 0;
    float spacing = 0.0f;
};

struct NormalRow {
    float* x = nullptr;
    float* y = nullptr;
    float* z = nullptr;
};

/// A row of vertices after the move: positions in micrometres, and the horizontal ones in cells,
/// which are not rounded to whole numbers.
struct VertexRow {
    float* x = nullptr;
    float* y = nullptr;
    float* z = nullptr;
    float* col = nullptr;
    float* row = nullptr;
};

/// Up by `distance` and sideways by `lateral` * `distance` along the normal.
struct SurfaceMove {
    float distance = 0.0f;
    float lateral = 0.0f;
    bool isStraight = false;  ///< whatever the normals are, they do not matter
};

ZELMO_DECLARE_LANE_KERNEL(void ComputeNormalsOfRow(const NormalRow& normals,
                                                   const SurfaceRow& surface))

ZELMO_DECLARE_LANE_KERNEL(void MoveVerticesOfRow(const VertexRow& vertices,
                                                 const SurfaceRow& surface,
                                                 const SurfaceMove& move))

/// Whether all values lie between -limit and limit.
ZELMO_DECLARE_LANE_KERNEL(bool AreWithin(const float* values, std::size_t count, float limit))

}  // namespace zelmo
