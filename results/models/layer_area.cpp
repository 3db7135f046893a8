#include "results/models/layer_area.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace zelmo {

LayerArea::LayerArea(const Layer& layer, const ShownWindow& window)
    : layer_(layer), window_(window) {
    const auto nodes =
        static_cast<std::size_t>(window.cols) * static_cast<std::size_t>(window.rows);
    // Triangles, and corners of triangles of both surfaces, are numbered with 32 bits.
    if (nodes > std::numeric_limits<std::uint32_t>::max() / 16) {
        throw std::length_error("the grid is too large for a model");
    }
    thick_.resize(nodes);
    squares_.resize(nodes);
    if (window.cols > 1 && window.rows > 1) {
        FindThick();
        FindSquares();
        Measure();
    }
}

void LayerArea::FindThick() {
    for (std::int32_t row = 0; row < window_.rows; ++row) {
        const float* const tops = HeightRow(LayerSide::Top, row);
        const float* const bottoms = HeightRow(LayerSide::Bottom, row);
        std::uint8_t* const thick = thick_.data() + Node(0, row);
        for (std::int32_t col = 0; col < window_.cols; ++col) {
            thick[col] = tops[col] - bottoms[col] == 0.0f ? 0 : 1;
            isInverted_ = isInverted_ || tops[col] < bottoms[col];
            isFinite_ = isFinite_ && std::isfinite(tops[col]) && std::isfinite(bottoms[col]);
        }
    }
}

void LayerArea::FindSquares() {
    for (std::int32_t row = 0; row + 1 < window_.rows; ++row) {
        const std::uint8_t* const front = thick_.data() + Node(0, row);
        const std::uint8_t* const back = thick_.data() + Node(0, row + 1);
        for (std::int32_t col = 0; col + 1 < window_.cols; ++col) {
            const std::uint8_t square =
                DrawnTriangles(front[col], front[col + 1], back[col], back[col + 1]);
            squares_[Node(col, row)] = square;
            isEmpty_ = isEmpty_ && square == 0;
        }
    }
}

void LayerArea::Measure() {
    const auto thickness = [&](std::int32_t col, std::int32_t row) {
        return static_cast<double>(Height(LayerSide::Top, col, row)) -
               static_cast<double>(Height(LayerSide::Bottom, col, row));
    };
    for (std::int32_t row = 0; row + 1 < window_.rows; ++row) {
        for (std::int32_t col = 0; col + 1 < window_.cols; ++col) {
            const std::uint8_t square = Square(col, row);
            if (square == 0) {
                continue;
            }
            const double diagonal = thickness(col + 1, row) + thickness(col, row + 1);
            if ((square & hasFrontTriangle) != 0) {
                volume_ += (thickness(col, row) + diagonal) / 6.0;
                extent_ += 0.5;
            }
            if ((square & hasBackTriangle) != 0) {
                volume_ += (thickness(col + 1, row + 1) + diagonal) / 6.0;
                extent_ += 0.5;
            }
        }
    }
}

bool IsTouchingEdge(const LayerArea& area, std::int32_t col, std::int32_t row, int direction) {
    const auto& [stepCol, stepRow] = edgeSteps[direction];
    const std::int32_t otherCol = col + stepCol;
    const std::int32_t otherRow = row + stepRow;
    return otherCol >= 0 && otherRow >= 0 && otherCol < area.Cols() && otherRow < area.Rows() &&
           !area.IsThick(col, row) && !area.IsThick(otherCol, otherRow) &&
           HasSector(area, col, row, direction) && HasSector(area, col, row, (direction + 5) % 6);
}

bool IsLoneEnd(const LayerArea& area, std::int32_t col, std::int32_t row, int direction) {
    for (int other = 0; other < 6; ++other) {
        if (!HasSector(area, col, row, other) ||
            (other != direction && IsTouchingEdge(area, col, row, other))) {
            return false;
        }
    }
    return true;
}

bool IsPinch(const LayerArea& area, std::int32_t col, std::int32_t row) {
    if (area.IsThick(col, row)) {
        return false;
    }
    for (const auto& [stepCol, stepRow] : edgeSteps) {
        const std::int32_t otherCol = col + stepCol;
        const std::int32_t otherRow = row + stepRow;
        if (otherCol >= 0 && otherRow >= 0 && otherCol < area.Cols() && otherRow < area.Rows() &&
            !area.IsThick(otherCol, otherRow)) {
            return false;
        }
    }
    return true;
}

}  // namespace zelmo
