#include "results/models/model_vertices.h"

#include <cstddef>

namespace zelmo {

namespace {

std::int64_t Cross(const GridStep& a, std::int32_t col, std::int32_t row) {
    return std::int64_t{a.col} * row - std::int64_t{a.row} * col;
}

/// Whether parts of the solid end at an edge from a node, as seen from both its sides. A touching
/// edge that no other continues on either end divides nothing: there the surfaces only meet.
bool IsDivided(const LayerArea& area, std::int32_t col, std::int32_t row, int direction) {
    if (!HasSector(area, col, row, direction) || !HasSector(area, col, row, (direction + 5) % 6)) {
        return true;
    }
    const auto& [stepCol, stepRow] = edgeSteps[direction];
    return IsTouchingEdge(area, col, row, direction) &&
           !(IsLoneEnd(area, col, row, direction) &&
             IsLoneEnd(area, col + stepCol, row + stepRow, (direction + 3) % 6));
}

}  // namespace

ModelVertices::ModelVertices(const LayerArea& area) : area_(area) {
    for (auto& numbers : numbers_) {
        numbers.assign(area.NodeCount(), unnumbered);
    }
}

std::size_t ModelVertices::PartAt(LayerSide side, std::int32_t col, std::int32_t row,
                                  int sector) const {
    for (int back = 0; back < 6; ++back) {
        const int direction = (sector + 6 - back) % 6;
        if (IsDivided(area_, col, row, direction)) {
            return static_cast<std::size_t>(direction);
        }
    }
    return side == LayerSide::Top ? 6 : 7;  // the surfaces meet in the node alone
}

int SectorOf(std::int32_t stepCol, std::int32_t stepRow) {
    for (int sector = 0; sector < 5; ++sector) {
        if (Cross(edgeSteps[sector], stepCol, stepRow) >= 0 &&
            Cross(edgeSteps[sector + 1], stepCol, stepRow) < 0) {
            return sector;
        }
    }
    return 5;
}

}  // namespace zelmo
