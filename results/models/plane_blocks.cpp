#include "results/models/plane_blocks.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

namespace zelmo {

namespace {

constexpr int greatestLevel = 6;

/// How many triangles a piece takes, with what its neighbours need on its sides.
constexpr float usualTriangles = 4.0f;

/// How far two planes, parallel to that between the corners of a square piece, are from each other
/// that hold all of its heights between them; infinite if that is more than `most`.
double SpreadOf(const LayerArea& area, LayerSide side, std::int32_t col, std::int32_t row,
                std::int32_t size, double most) {
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
            return std::numeric_limits<double>::infinity();
        }
    }
    return highest - lowest;
}

/// The pieces of one level, by their position: whether they are flat enough, and how many
/// triangles they take, as far as one can tell, in the best way found so far.
class Level {
public:
    Level(std::int32_t pieceCols, std::int32_t pieceRows)
        : cols_(pieceCols),
          rows_(pieceRows),
          pieces_(static_cast<std::size_t>(cols_) * static_cast<std::size_t>(rows_)) {}

    struct Piece {
        bool isFlat = false;
        float triangles = 0.0f;
    };

    std::int32_t Cols() const { return cols_; }
    std::int32_t Rows() const { return rows_; }
    Piece& At(std::int32_t col, std::int32_t row) {
        return pieces_[static_cast<std::size_t>(row) * static_cast<std::size_t>(cols_) +
                       static_cast<std::size_t>(col)];
    }

private:
    std::int32_t cols_;
    std::int32_t rows_;
    std::vector<Piece> pieces_;
};

/// Tells of rows of squares, in one of both directions, that are exactly flat as a whole: they take
/// two triangles, shared out over their squares.
class FlatRows {
public:
    FlatRows(const LayerArea& area, LayerSide side, Level& squares, GridStep step)
        : area_(area), side_(side), squares_(squares), step_(step) {}

    /// Along the row or column that begins with this square.
    void Find(std::int32_t col, std::int32_t row) {
        std::int32_t length = IsFlat(col, row) ? 1 : 0;
        while (col + step_.col < squares_.Cols() && row + step_.row < squares_.Rows()) {
            const std::int32_t nextCol = col + step_.col;
            const std::int32_t nextRow = row + step_.row;
            const bool isFlat = IsFlat(nextCol, nextRow);
            if (!isFlat || !Continues(col, row)) {
                Finish(col, row, length);
                length = 0;
            }
            length += isFlat ? 1 : 0;
            col = nextCol;
            row = nextRow;
        }
        Finish(col, row, length);
    }

private:
    double Height(std::int32_t col, std::int32_t row) const {
        return area_.Height(side_, col, row);
    }
    bool IsFlat(std::int32_t col, std::int32_t row) const {
        return Height(col, row) + Height(col + 1, row + 1) ==
               Height(col + 1, row) + Height(col, row + 1);
    }
    /// Whether the next square, flat as this one, lies in the same plane.
    bool Continues(std::int32_t col, std::int32_t row) const {
        return Height(col + step_.col, row + step_.row) - Height(col, row) ==
               Height(col + 2 * step_.col, row + 2 * step_.row) -
                   Height(col + step_.col, row + step_.row);
    }
    /// The row ends with this square.
    void Finish(std::int32_t col, std::int32_t row, std::int32_t length) {
        const float share = 2.0f / static_cast<float>(std::max(length, 1));
        for (std::int32_t i = 0; i < length; ++i) {
            float& triangles = squares_.At(col - i * step_.col, row - i * step_.row).triangles;
            triangles = std::min(triangles, share);
        }
    }

    const LayerArea& area_;
    LayerSide side_;
    Level& squares_;
    GridStep step_;
};

/// The single squares. Pieces of them may be made where the layer is thick enough at all nodes.
Level FindSquares(const LayerArea& area, LayerSide side, double leastThickness) {
    Level squares(area.Cols() - 1, area.Rows() - 1);
    const auto isThick = [&](std::int32_t col, std::int32_t row) {
        return static_cast<double>(area.Height(LayerSide::Top, col, row)) -
                   static_cast<double>(area.Height(LayerSide::Bottom, col, row)) >
               leastThickness;
    };
    for (std::int32_t row = 0; row < squares.Rows(); ++row) {
        for (std::int32_t col = 0; col < squares.Cols(); ++col) {
            const bool isFlat = isThick(col, row) && isThick(col + 1, row) &&
                                isThick(col, row + 1) && isThick(col + 1, row + 1);
            squares.At(col, row) = {isFlat, 2.0f};
        }
    }
    for (std::int32_t row = 0; row < squares.Rows(); ++row) {
        FlatRows(area, side, squares, {1, 0}).Find(0, row);
    }
    for (std::int32_t col = 0; col < squares.Cols(); ++col) {
        FlatRows(area, side, squares, {0, 1}).Find(col, 0);
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

/// What a piece's four parts are together.
Level::Piece Together(Level& parts, std::int32_t col, std::int32_t row) {
    Level::Piece together{true, 0.0f};
    for (const auto& [dCol, dRow] : {GridStep{0, 0}, {1, 0}, {0, 1}, {1, 1}}) {
        const Level::Piece& part = parts.At(2 * col + dCol, 2 * row + dRow);
        together.isFlat = together.isFlat && part.isFlat;
        together.triangles += part.triangles;
    }
    return together;
}

PlaneBlocks FindPlaneBlocks(const LayerArea& area, LayerSide side, double bound) {
    PlaneBlocks blocks{std::vector<std::uint8_t>(area.NodeCount()), area.Cols()};
    if (!(bound > 0.0) || area.IsInverted()) {
        return blocks;
    }
    Level parts = FindSquares(area, side, 4.0 * bound);
    for (int level = 1; level <= greatestLevel; ++level) {
        const std::int32_t size = 1 << level;
        Level pieces(parts.Cols() / 2, parts.Rows() / 2);
        for (std::int32_t row = 0; row < pieces.Rows(); ++row) {
            for (std::int32_t col = 0; col < pieces.Cols(); ++col) {
                Level::Piece& piece = pieces.At(col, row);
                piece = Together(parts, col, row);
                const double most = 2.0 * bound;
                const double spread =
                    piece.isFlat ? SpreadOf(area, side, col * size, row * size, size, most) : most;
                piece.isFlat = piece.isFlat && spread <= most;
                if (piece.isFlat && piece.triangles > usualTriangles) {
                    piece.triangles = usualTriangles;
                    if (spread > 0.0) {
                        MarkSquares(blocks, col * size, row * size, level);
                    }
                }
            }
        }
        parts = std::move(pieces);
    }
    return blocks;
}

}  // namespace zelmo
