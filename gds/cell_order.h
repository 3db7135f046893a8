#pragma once

#include <cstddef>
#include <vector>

namespace zelmo {

struct GdsDatabase;

/// The cells of a database by what they contain. References that point nowhere do not count.
struct CellOrder {
    std::vector<std::size_t> childrenFirst;  ///< all cells, each behind those that it refers to
    std::vector<bool> isEndless;  ///< of each cell: it is, or contains, one that contains itself
    std::vector<bool> isTop;      ///< of each cell: no other one refers to it
};

/// Cells that contain themselves stand anywhere.
CellOrder OrderCells(const GdsDatabase& database);

}  // namespace zelmo
