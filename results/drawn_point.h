#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace zelmo {

struct Grid;
struct GridPosition;

/// A point of the surfaces as they are drawn. Each square of four neighbouring cells is drawn as
/// two flat triangles, which meet on the diagonal from its lower right to its upper left cell; what
/// lies between cells is told from the corners of the triangle that holds the point. At a cell it
/// is the cell's own height.
class DrawnPoint {
public:
    /// A point of the grid.
    DrawnPoint(const Grid& grid, const GridPosition& position);

    /// The height of a surface there, in the unit of `surface`, an array over the grid.
    double HeightOf(std::span<const float> surface) const;

private:
    std::array<std::size_t, 3> corners_{};  ///< the triangle's corner at the right angle first
    std::array<double, 2> shares_{};        ///< of the other two corners
};

}  // namespace zelmo
