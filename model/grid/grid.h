#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelmo {

struct ProcessSettings;

/// A grid offset and its length in micrometres.
struct NeighbourOffset {
    std::int32_t dx = 0;
    std::int32_t dy = 0;
    float distance = 0.0f;
};

/// All grid offsets, nearest first; equal distances in order of dy, then dx.
struct NeighbourTable {
    std::vector<NeighbourOffset> entries;
    std::int32_t count = 0;
};

/// The regular grid over the location window and a margin around it, with the tables that searches
/// on it need. Lengths in micrometres. Arrays over the grid are row-major: index = row * columns +
/// col; columns run along x, rows along y, and a cell lies at (col * spacing, row * spacing) from
/// the grid's corner.
struct Grid {
    std::int32_t columns = 0;
    std::int32_t rows = 0;  ///< at most `columns`
    float spacing = 0.0f;
    float width = 0.0f;
    float height = 0.0f;
    float originX = 0.0f;  ///< the grid's corner, in coordinates of the layout
    float originY = 0.0f;
    float marginX = 0.0f;  ///< from the grid's corner to the window's
    float marginY = 0.0f;
    NeighbourTable neighbours{};
    /// Truncated distance in cells -> last position in the neighbour table.
    std::vector<std::int32_t> distanceIndex{};

    std::size_t CellCount() const {
        return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    }
};

/// Sizes a grid for the window and number of columns: every operation in single precision. The
/// grid overhangs the window by a tenth of its size on each side. Its tables stay as they are.
void SizeGrid(Grid& grid, const ProcessSettings& settings);

}  // namespace zelmo
