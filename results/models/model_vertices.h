#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "results/models/layer_area.h"

namespace zelmo {

/// The vertices of a layer's model. Both surfaces have one at a node; where they meet there is one
/// for each part of the solid that ends in the node, so that none is shared by parts that only
/// touch.
class ModelVertices {
public:
    explicit ModelVertices(const LayerArea& area);

    /// The vertex of a surface at a node, of the part of the solid that lies in this sector.
    std::uint32_t VertexAt(LayerSide side, std::int32_t col, std::int32_t row, int sector) {
        const std::size_t node = area_.Node(col, row);
        if (area_.IsThick(col, row)) {
            return Number(numbers_[side == LayerSide::Top ? 1 : 0][node], side, col, row);
        }
        const auto [entry, isNew] =
            meeting_.try_emplace(node * partsOfNode + PartAt(side, col, row, sector), unnumbered);
        return Number(entry->second, side, col, row);
    }

    /// A vertex's node, and the surface on which it is.
    struct Source {
        LayerSide side;
        std::int32_t col;
        std::int32_t row;
    };
    const std::vector<Source>& Sources() const { return sources_; }

private:
    static constexpr std::uint32_t unnumbered = 0xFFFFFFFF;
    static constexpr std::size_t partsOfNode = 8;

    std::uint32_t Number(std::uint32_t& number, LayerSide side, std::int32_t col,
                         std::int32_t row) {
        if (number == unnumbered) {
            number = static_cast<std::uint32_t>(sources_.size());
            sources_.push_back({side, col, row});
        }
        return number;
    }
    std::size_t PartAt(LayerSide side, std::int32_t col, std::int32_t row, int sector) const;

    const LayerArea& area_;
    std::array<std::vector<std::uint32_t>, 2> numbers_;  ///< by node
    std::unordered_map<std::size_t, std::uint32_t> meeting_;
    std::vector<Source> sources_;
};

/// The sector of a node that begins with a direction, or holds it.
int SectorOf(std::int32_t stepCol, std::int32_t stepRow);

}  // namespace zelmo
