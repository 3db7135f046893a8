#include "render/mesh/mesh_numbers.h"

#include <algorithm>

namespace zelmo {

namespace {

/// Whether one of two neighbouring squares has a triangle that touches the position between them,
/// in the row behind their row of squares or in the row before it.
bool TouchBack(unsigned left, unsigned right) {
    return ((left & hasBackTriangle) | (right & hasSquare)) != 0;
}
bool TouchFront(unsigned left, unsigned right) {
    return ((left & hasSquare) | (right & hasFrontTriangle)) != 0;
}

/// How many positions at this place, in both rows, are new in a row of squares.
std::uint32_t NewPositions(unsigned leftBefore, unsigned rightBefore, unsigned left,
                           unsigned right) {
    const bool isOld = TouchBack(leftBefore, rightBefore);
    return (TouchBack(left, right) ? 1u : 0u) + (TouchFront(left, right) && !isOld ? 1u : 0u);
}

/// Gives numbers from `next` on to the corners of a triangle that have none; returns the next one.
std::uint32_t NumberCorners(VertexNumbers& a, VertexNumbers& b, VertexNumbers& c,
                            std::uint32_t next) {
    std::uint32_t count = 0;
    for (VertexNumbers* corner : {&a, &b, &c}) {
        if (!corner->Given()) {
            corner->lower = next + count;
            ++count;
        }
    }
    for (VertexNumbers* corner : {&a, &b, &c}) {
        if (corner->upper == unnumbered) {
            corner->upper = corner->lower + count;
        }
    }
    return next + 2 * count;
}

}  // namespace

std::uint32_t CountNewVertices(const std::uint8_t* before, const std::uint8_t* squares,
                               std::size_t count) {
    if (before == nullptr) {
        const std::vector<std::uint8_t> nothing(count);
        return CountNewVertices(nothing.data(), squares, count);
    }
    std::uint32_t positions = NewPositions(0, before[0], 0, squares[0]) +
                              NewPositions(before[count - 1], 0, squares[count - 1], 0);
    for (std::size_t i = 1; i < count; ++i) {
        positions += NewPositions(before[i - 1], before[i], squares[i - 1], squares[i]);
    }
    return 2 * positions;
}

void NumberSquareRow(const std::uint8_t* squares, std::size_t count, NumberRow& front,
                     NumberRow& back, std::uint32_t next) {
    std::fill(back.begin(), back.end(), VertexNumbers{});
    for (std::size_t i = 0; i < count; ++i) {
        const bool isWhole = (squares[i] & hasSquare) == hasSquare;
        if (isWhole && front[i].Given() && front[i + 1].Given() && back[i].Given()) {
            // What most squares are: only their last corner is new.
            back[i + 1] = {next, next + 1};
            next += 2;
            continue;
        }
        if ((squares[i] & hasFrontTriangle) != 0) {
            next = NumberCorners(front[i], front[i + 1], back[i], next);
        }
        if ((squares[i] & hasBackTriangle) != 0) {
            next = NumberCorners(front[i + 1], back[i + 1], back[i], next);
        }
    }
}

void MarkBackRow(const std::uint8_t* squares, std::size_t count, NumberRow& row) {
    std::fill(row.begin(), row.end(), VertexNumbers{});
    for (std::size_t i = 0; squares != nullptr && i <= count; ++i) {
        if (TouchBack(i > 0 ? squares[i - 1] : 0, i < count ? squares[i] : 0)) {
            row[i] = {0, 0};
        }
    }
}

}  // namespace zelmo
