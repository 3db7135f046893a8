#pragma once

#include <cstdint>
#include <vector>

#include "results/models/layer_area.h"

namespace zelmo {

/// Square pieces of a surface that are flat but for less than a bound. A piece of level n covers
/// 2^n by 2^n squares, its corner at multiples of 2^n.
struct PlaneBlocks {
    std::vector<std::uint8_t> levels;  ///< by the square's node; 0: in no piece
    std::int32_t cols = 0;             ///< of nodes

    /// Whether two squares, both in pieces, are in the same one.
    bool AreTogether(std::size_t first, std::size_t second) const {
        const auto width = static_cast<std::size_t>(cols);
        const int level = levels[first];
        return levels[second] == level && (first % width) >> level == (second % width) >> level &&
               (first / width) >> level == (second / width) >> level;
    }
};

/// The largest pieces whose heights lie within `bound` micrometres of a plane, but for what is
/// exactly flat already, as a whole piece or over long rows. The layer is more than four times the
/// bound thick at all of their nodes: so no surface that stays within twice the bound touches the
/// other one.
PlaneBlocks FindPlaneBlocks(const LayerArea& area, LayerSide side, double bound);

}  // namespace zelmo
