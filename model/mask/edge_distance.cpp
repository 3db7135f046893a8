#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "base/conversions.h"
#include "base/stop_scope.h"
#include "model/grid/grid.h"
#include "model/mask/distance_transform.h"
#include "model/mask/edge_distance_lanes.h"
#include "model/mask/mask.h"

// The distance of a cell is that of the first entry of the neighbour table, from a start on that
// depends on the previous cell, which leads to a free cell. An exact transform tells the nearest
// free cell of every cell; where the start lies before all entries of that distance, it is the one
// that the walk through the table would find. The few other cells look for the nearest free cell
// beyond the distance of their start.

namespace zelmo {

namespace {

constexpr std::int32_t nothing = std::numeric_limits<std::int32_t>::max();

/// The largest number whose square is not above `n`.
std::int32_t WholeRoot(std::int32_t n) {
    return static_cast<std::int32_t>(std::sqrt(static_cast<double>(n)));
}

float TableDistance(std::int32_t squared, float spacing) {
    return std::sqrt(static_cast<float>(squared)) * spacing;
}

/// What a search goes by.
struct EdgeSearch {
    const Grid& grid;
    const std::vector<std::int32_t>& squared;  ///< exact, 0 at free cells

    bool InGrid(std::int32_t col, std::int32_t row) const {
        return col >= 0 && col < grid.columns && row >= 0 && row < grid.rows;
    }
    std::int32_t SquaredAt(std::int32_t col, std::int32_t row) const {
        return squared[static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                       static_cast<std::size_t>(col)];
    }
};

/// Where in the neighbour table to start looking, after a cell with the distance `running`: the
/// distance falls by one pitch at most, and one slot more is left for safety.
std::size_t SearchStart(const Grid& grid, float running) {
    if (running == 0.0f) {
        return 0;
    }
    const std::int32_t cells = TruncateToI32((running - grid.spacing) / grid.spacing);
    const std::int32_t slot = cells < 1 ? 0 : cells - 1;
    return static_cast<std::size_t>(grid.distanceIndex[static_cast<std::size_t>(slot)]);
}

/// The free cell of another row that is nearest to (col, row) among those farther than the square
/// root of `limit`, if nearer than that of `best`: its squared distance, or `best`. Along the row
/// in one direction, in steps that leap over the cells that cannot be free.
std::int32_t NearestInRow(const EdgeSearch& search, std::int32_t col, std::int32_t row,
                          std::int32_t otherRow, std::int32_t direction, std::int32_t limit,
                          std::int32_t best) {
    const std::int32_t across = (otherRow - row) * (otherRow - row);
    std::int32_t dx = across > limit ? 0 : WholeRoot(limit - across) + 1;
    while (search.InGrid(col + direction * dx, otherRow) && dx * dx + across < best) {
        const std::int32_t free = search.SquaredAt(col + direction * dx, otherRow);
        if (free == 0) {
            return dx * dx + across;
        }
        dx += WholeRoot(free);
    }
    return best;
}

/// The squared distance to the nearest free cell that is farther than the square root of `limit`.
std::int32_t NearestBeyond(const EdgeSearch& search, std::int32_t col, std::int32_t row,
                           std::int32_t limit) {
    std::int32_t best = nothing;
    for (std::int32_t dy = 0; dy < search.grid.rows && dy * dy < best; ++dy) {
        for (const std::int32_t otherRow : {row - dy, row + dy}) {
            for (const std::int32_t direction : {-1, 1}) {
                best = NearestInRow(search, col, row, otherRow, direction, limit, best);
            }
        }
    }
    return best;
}

/// The distance of a masked cell after one with the distance `running`, which it keeps if it finds
/// nothing.
float FindDistance(const EdgeSearch& search, std::int32_t col, std::int32_t row, float running) {
    const Grid& grid = search.grid;
    const NeighbourOffset& start = grid.neighbours.entries[SearchStart(grid, running)];
    const std::int32_t startSquared = start.dx * start.dx + start.dy * start.dy;
    const std::int32_t nearest = search.SquaredAt(col, row);
    const float nearestDistance = TableDistance(nearest, grid.spacing);
    if (nearest > startSquared && nearestDistance != start.distance) {
        return nearestDistance;
    }
    if (search.InGrid(col + start.dx, row + start.dy) &&
        search.SquaredAt(col + start.dx, row + start.dy) == 0) {
        return start.distance;
    }
    // The start is the last entry of its distance, which several squared distances can share.
    std::int32_t limit = startSquared;
    while (TableDistance(limit + 1, grid.spacing) == start.distance) {
        ++limit;
    }
    const std::int32_t beyond = NearestBeyond(search, col, row, limit);
    return beyond == nothing ? running : TableDistance(beyond, grid.spacing);
}

/// Corrects a row of exact distances where the searches begin too late to find them. `running` is
/// the distance before its first cell.
void FollowSearches(const EdgeSearch& search, float* distances, std::int32_t row, float running,
                    std::vector<std::int32_t>& late) {
    const std::int32_t cols = search.grid.columns;
    const float spacing = search.grid.spacing;
    const bool anyLate = ZELMO_PICK_LANES(MarkLateSearches)(late.data(), distances, cols, spacing);
    const auto isLate = [](std::int32_t mark) { return mark != 0; };
    const auto begin = late.begin();
    const auto end = begin + cols;
    late[0] = 1;
    for (auto next = begin; next != end; next = anyLate ? std::find_if(next, end, isLate) : end) {
        // What a late search finds can make the next one late, too.
        bool differs = true;
        for (; differs && next != end; ++next) {
            const auto col = static_cast<std::int32_t>(next - begin);
            const float exact = distances[col];
            if (search.SquaredAt(col, row) != 0) {
                distances[col] =
                    FindDistance(search, col, row, col == 0 ? running : distances[col - 1]);
            }
            differs = distances[col] != exact;
        }
    }
}

}  // namespace

void MaskEdgeDistance(const Grid& grid, std::span<float> edgeDistance,
                      std::span<const std::uint8_t> mask) {
    std::vector<std::int32_t> squared(mask.size());
    if (!SquaredDistanceTransform(squared, mask, grid.columns, grid.rows)) {
        std::fill(edgeDistance.begin(), edgeDistance.end(), std::numeric_limits<float>::max());
        return;
    }
    const EdgeSearch search{grid, squared};
    const auto cols = static_cast<std::size_t>(grid.columns);
    std::vector<std::int32_t> late(cols);
    float running = 0.0f;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        EndIfStopped();
        const std::size_t first = static_cast<std::size_t>(row) * cols;
        float* distances = edgeDistance.data() + first;
        ZELMO_PICK_LANES(TableDistances)
        (distances, squared.data() + first, grid.columns, grid.spacing);
        FollowSearches(search, distances, row, running, late);
        const bool anyFree = std::memchr(mask.data() + first, 0, cols) != nullptr;
        running = anyFree ? 0.0f : distances[0];
    }
}

}  // namespace zelmo
