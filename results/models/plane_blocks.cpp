#include "results/models/plane_blocks.h"

#include <algorithm>
#include <cstddef>

namespace zelmo {

namespace {

constexpr int greatestLevel = 6;

/// How far the heights of a square piece leave the plane between its corners, from the lowest to
/// the highest difference; infinite once that is more than `most`.
bool IsFlat(const LayerArea& area, LayerSide side, std::int32_t col, std::int32_t row,
            std::int32_t size, double most, bool& isExact) {
    const auto height = [&](std::int32_t dCol, std::int32_t dRow) -> double {
        return area.Height(side, col + dCol, row + dRow);
    };
    const double frontLeft = height(0, 0);
    const double alongFront = height(size, 0) - frontLeft;
    const double alongLeft = height(0, size) - frontLeft;
    const double alongBack = height(size, size) - height(0, size);
    const double alongRight = height(size, size) - height(size, 0);
    const double perCol = (alongFront + alongBack) / (2.0 * size);
    const double perRow = (alongLeft + alongRight) / (2.0 * size);
    double lowest = 0.0;
    double highest = 0.0;
    for (std::int32_t dRow = 0; dRow <= size; ++dRow) {
        const float* const heights = area.HeightRow(side, row + dRow) + col;
        const double start = frontLeft + perRow * dRow;
        for (std::int32_t dCol = 0; dCol <= size; ++dCol) {
            const double difference = heights[dCol] - (start + perCol * dCol);
            lowest = std::min(lowest, difference);
            highest = std::max(highest, difference);
        }
        if (highest - lowest > most) {
            return false;
        }
    }
    isExact = highest == lowest;
    return true;
}

/// The pieces of one level, from those of the level before.
class Level {
public:
    Level(std::int32_t squareCols, std::int32_t squareRows)
        : cols_(squareCols),
          rows_(squareRows),
          isPiece_(static_cast<std::size_t>(cols_) * static_cast<std::size_t>(rows_)) {}

    std::int32_t Cols() const { return cols_; }
    std::int32_t Rows() const { return rows_; }
    std::uint8_t& At(std::int32_t col, std::int32_t row) {
        return isPiece_[static_cast<std::size_t>(row) * static_cast<std::size_t>(cols_) +
                        static_cast<std::size_t>(col)];
    }

private:
    std::int32_t cols_;
    std::int32_t rows_;
    std::vector<std::uint8_t> isPiece_;
};

/// The squares at whose nodes the layer is thick enough.
Level ThickSquares(const LayerArea& area, double least) {
    Level squares(area.Cols() - 1, area.Rows() - 1);
    const auto thickness = [&](std::int32_t col, std::int32_t row) {
        return static_cast<double>(area.Height(LayerSide::Top, col, row)) -
               static_cast<double>(area.Height(LayerSide::Bottom, col, row));
    };
    for (std::int32_t row = 0; row < squares.Rows(); ++row) {
        for (std::int32_t col = 0; col < squares.Cols(); ++col) {
            const bool isThick = thickness(col, row) > least && thickness(col + 1, row) > least &&
                                 thickness(col, row + 1) > least &&
                                 thickness(col + 1, row + 1) > least;
            squares.At(col, row) = isThick ? 1 : 0;
        }
    }
    return squares;
}

void MarkSquares(PlaneBlocks& blocks, std::int32_t col, std::int32_t row, int level) {
    const std::int32_t size = 1 << level;
    for (std::int32_t i = 0; i < size; ++i) {
        const auto start = static_cast<std::ptrdiff_t>(row + i) * blocks.cols + col;
        std::fill_n(blocks.levels.begin() + start, size, static_cast<std::uint8_t>(level));
    }
}

}  // namespace

PlaneBlocks FindPlaneBlocks(const LayerArea& area, LayerSide side, double bound) {
    PlaneBlocks blocks{std::vector<std::uint8_t>(area.NodeCount()), area.Cols()};
    if (!(bound > 0.0) || area.IsInverted()) {
        return blocks;
    }
    Level before = ThickSquares(area, 4.0 * bound);
    for (int level = 1; level <= greatestLevel; ++level) {
        const std::int32_t size = 1 << level;
        Level pieces(before.Cols() / 2, before.Rows() / 2);
        for (std::int32_t row = 0; row < pieces.Rows(); ++row) {
            for (std::int32_t col = 0; col < pieces.Cols(); ++col) {
                bool isExact = false;
                if (before.At(2 * col, 2 * row) != 0 && before.At(2 * col + 1, 2 * row) != 0 &&
                    before.At(2 * col, 2 * row + 1) != 0 &&
                    before.At(2 * col + 1, 2 * row + 1) != 0 &&
                    IsFlat(area, side, col * size, row * size, size, 2.0 * bound, isExact)) {
                    pieces.At(col, row) = 1;
                    if (!isExact) {
                        MarkSquares(blocks, col * size, row * size, level);
                    }
                }
            }
        }
        before = std::move(pieces);
    }
    return blocks;
}

}  // namespace zelmo
