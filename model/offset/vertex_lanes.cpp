#include "model/offset/vertex_lanes.h"

#include <cstddef>
#include <cstdint>

#include "base/lane_code.h"
#include "base/vector_lanes.h"

// One lane is one column. The padding makes the first and the last columns ordinary ones, but for
// the squares that do not exist there.

namespace zelmo::ZELMO_LANES {

namespace {

constexpr std::int32_t lanes = laneCount<FloatLanes>;

/// The triangle fans around the vertices from a column on, counter-clockwise seen from above.
struct Fan {
    const SurfaceRow& surface;
    std::int32_t col;
    FloatLanes height;
};

/// The way from each vertex to the one `dcol` columns to the right in the given neighbouring row.
VectorLanes ToNeighbour(const Fan& fan, std::int32_t dcol, std::int32_t drow, const float* row) {
    const float spacing = fan.surface.spacing;
    return {Broadcast<FloatLanes>(static_cast<float>(dcol) * spacing),
            Broadcast<FloatLanes>(static_cast<float>(drow) * spacing),
            LoadLanes<FloatLanes>(row + fan.col + dcol) - fan.height};
}

/// Adds the cross products of a square's two triangles, where there is such a square.
template <bool atEdge>
void AddSquare(VectorLanes& sum, const VectorLanes& first, const VectorLanes& middle,
               const VectorLanes& last, const IntLanes& exists) {
    const VectorLanes with = Sum(Sum(sum, Cross(first, middle)), Cross(middle, last));
    if constexpr (atEdge) {
        sum = {exists ? with.x : sum.x, exists ? with.y : sum.y, exists ? with.z : sum.z};
    } else {
        sum = with;
    }
}

/// The sum of the cross products around each vertex.
template <bool atEdge>
VectorLanes SumOfFan(const Fan& fan) {
    const SurfaceRow& surface = fan.surface;
    const IntLanes cols = CountingLanes<IntLanes>() + fan.col;
    const IntLanes hasLeft = cols > 0;
    const IntLanes hasRight = cols < surface.cols - 1;
    const VectorLanes left = ToNeighbour(fan, -1, 0, surface.here);
    const VectorLanes right = ToNeighbour(fan, 1, 0, surface.here);
    VectorLanes sum{FloatLanes{}, FloatLanes{}, FloatLanes{}};
    if (surface.above != nullptr) {
        AddSquare<atEdge>(sum, ToNeighbour(fan, 0, 1, surface.above),
                          ToNeighbour(fan, -1, 1, surface.above), left, hasLeft);
    }
    if (surface.below != nullptr) {
        const VectorLanes down = ToNeighbour(fan, 0, -1, surface.below);
        AddSquare<atEdge>(sum, left, ToNeighbour(fan, -1, -1, surface.below), down, hasLeft);
        AddSquare<atEdge>(sum, down, ToNeighbour(fan, 1, -1, surface.below), right, hasRight);
    }
    if (surface.above != nullptr) {
        AddSquare<atEdge>(sum, right, ToNeighbour(fan, 1, 1, surface.above),
                          ToNeighbour(fan, 0, 1, surface.above), hasRight);
    }
    return sum;
}

/// The unit normals of the vertices from a column on, or (0, 0, 0).
VectorLanes NormalsFrom(const SurfaceRow& surface, std::int32_t col) {
    const Fan fan{surface, col, LoadLanes<FloatLanes>(surface.here + col)};
    const bool atEdge = col == 0 || col + lanes >= surface.cols;
    const VectorLanes sum = atEdge ? SumOfFan<true>(fan) : SumOfFan<false>(fan);
    const FloatLanes length = RootLanes(Dot(sum, sum));
    // Divided one by one: a reciprocal would round differently. NaN gives no normal.
    const IntLanes hasNormal = length > 0.0f;
    const FloatLanes none{};
    return {hasNormal ? sum.x / length : none, hasNormal ? sum.y / length : none,
            hasNormal ? sum.z / length : none};
}

}  // namespace

[[gnu::flatten]] void ComputeNormalsOfRow(const NormalRow& normals, const SurfaceRow& surface) {
    for (std::int32_t col = 0; col < surface.cols; col += lanes) {
        const VectorLanes normal = NormalsFrom(surface, col);
        StoreLanes(normals.x + col, normal.x);
        StoreLanes(normals.y + col, normal.y);
        StoreLanes(normals.z + col, normal.z);
    }
}

[[gnu::flatten]] void MoveVerticesOfRow(const VertexRow& vertices, const SurfaceRow& surface,
                                        const SurfaceMove& move) {
    const float spacing = surface.spacing;
    const float rowY = static_cast<float>(surface.row) * spacing;
    const VectorLanes none{FloatLanes{}, FloatLanes{}, FloatLanes{}};
    for (std::int32_t col = 0; col < surface.cols; col += lanes) {
        const VectorLanes normal = move.isStraight ? none : NormalsFrom(surface, col);
        const FloatLanes cols =
            __builtin_convertvector(CountingLanes<IntLanes>() + col, FloatLanes);
        const FloatLanes x = cols * spacing + normal.x * move.lateral * move.distance;
        const FloatLanes y = rowY + normal.y * move.lateral * move.distance;
        StoreLanes(vertices.x + col, x);
        StoreLanes(vertices.y + col, y);
        // The rise does not depend on the slope: a film has its full thickness on top.
        StoreLanes(vertices.z + col, move.distance + LoadLanes<FloatLanes>(surface.here + col));
        StoreLanes(vertices.col + col, x / spacing);
        StoreLanes(vertices.row + col, y / spacing);
    }
}

bool AreWithin(const float* values, std::size_t count, float limit) {
    std::int32_t outside = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isWithin = (values[i] <= limit) & (values[i] >= -limit);
        outside |= isWithin ? 0 : 1;
    }
    return outside == 0;
}

}  // namespace zelmo::ZELMO_LANES
