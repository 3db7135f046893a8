#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/neighbour_table.h"

// Filters over a disc of cells that slides along the rows of the grid. At the first column of a row
// the whole disc is taken in; with every further column the cells on its left edge are given up and
// those on its right edge are taken in, so that the work for a cell grows with the disc's edge and
// not with its area. Cells outside the grid are left out, nothing is mirrored or padded.

namespace zelmo {

struct Layer;
struct ProcessModel;

struct SlidingDisc {
    std::vector<GridOffset> inside;   ///< all cells of the disc
    std::vector<GridOffset> leaving;  ///< cells that drop out at one column further right
};

/// The disc of `radius` micrometres on the model's grid.
SlidingDisc SelectSlidingDisc(const ProcessModel& model, float radius);

/// Slides `disc` over the grid, row by row from column 0 on. Every row begins with a copy of
/// `emptyWindow`, which has
///   void Add(std::size_t cell);    a cell of the grid enters the disc
///   void Remove(std::size_t cell); a cell of the grid leaves it
///   void Store(std::size_t cell);  the disc stands complete around this cell
/// The calls come in the order of the two lists; for each entry of `leaving` the cell that leaves
/// is removed before its counterpart on the right is added. Rounded sums depend on that order.
template <typename Window>
void SlideDisc(std::int32_t cols, std::int32_t rows, const SlidingDisc& disc,
               const Window& emptyWindow) {
    struct Edge {
        std::int32_t dx;
        std::size_t rowStart;
    };
    const auto inGrid = [](std::int32_t position, std::int32_t size) {
        return position >= 0 && position < size;
    };
    const auto startOf = [cols](std::int32_t row) {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols);
    };
    std::vector<Edge> edges;  // the part of `leaving` that lies on rows of the grid
    edges.reserve(disc.leaving.size());

    for (std::int32_t row = 0; row < rows && cols > 0; ++row) {
        edges.clear();
        for (const GridOffset& offset : disc.leaving) {
            if (inGrid(row + offset.dy, rows)) {
                edges.push_back({offset.dx, startOf(row + offset.dy)});
            }
        }

        Window window = emptyWindow;
        for (const GridOffset& offset : disc.inside) {
            if (inGrid(offset.dx, cols) && inGrid(row + offset.dy, rows)) {
                window.Add(startOf(row + offset.dy) + static_cast<std::size_t>(offset.dx));
            }
        }
        window.Store(startOf(row));

        for (std::int32_t col = 1; col < cols; ++col) {
            for (const Edge& edge : edges) {
                const std::int32_t left = col + edge.dx;
                if (inGrid(left, cols)) {
                    window.Remove(edge.rowStart + static_cast<std::size_t>(left));
                }
                const std::int32_t right = col - edge.dx - 1;
                if (inGrid(right, cols)) {
                    window.Add(edge.rowStart + static_cast<std::size_t>(right));
                }
            }
            window.Store(startOf(row) + static_cast<std::size_t>(col));
        }
    }
}

/// Replaces the layer's `top` by its mean over a disc of `radius` micrometres, but nowhere by less
/// than `bottom`.
void SmoothLayerTop(const ProcessModel& model, Layer& layer, float radius);

}  // namespace zelmo
