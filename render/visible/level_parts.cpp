#include "render/visible/level_parts.h"

#include <algorithm>
#include <span>

#include "render/visible/chosen_triangles.h"

namespace zelmo {

namespace {

constexpr std::int32_t surroundings = 2;  // squares around a part that are level like it

/// Marks the columns that are level in all of these rows of squares.
void FindLevelColumns(std::span<const std::uint8_t> marks, std::int32_t firstSquareRow,
                      std::int32_t endSquareRow, std::vector<std::uint8_t>& columns) {
    std::fill(columns.begin(), columns.end(), std::uint8_t{1});
    for (std::int32_t squareRow = firstSquareRow; squareRow < endSquareRow; ++squareRow) {
        const std::uint8_t* row =
            marks.data() + static_cast<std::size_t>(squareRow) * columns.size();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i] &= row[i];
        }
    }
}

/// The part of the uppermost opaque layer with this corner.
LevelPart PartAt(const LayerStack& stack, std::int32_t col, std::int32_t squareRow) {
    LevelPart part{0, col, squareRow, 0.0f};
    for (std::size_t i = 0; i < stack.layers.size(); ++i) {
        const MeshWindow& window = stack.layers[i];
        if (IsOpaque(window.layer) && window.IsThick(col, squareRow)) {
            part.layer = i;
            part.height = window.layer.top[window.GridIndex(col, squareRow)];
        }
    }
    return part;
}

/// All level parts, from the front.
std::vector<LevelPart> FindLevelParts(const LayerStack& stack,
                                      std::span<const std::uint8_t> marks) {
    std::vector<LevelPart> parts;
    std::vector<std::uint8_t> columns(stack.Squares());
    for (std::int32_t squareRow = levelPartSize;
         squareRow + levelPartSize + surroundings < stack.rows; squareRow += levelPartSize) {
        FindLevelColumns(marks, squareRow - surroundings, squareRow + levelPartSize + surroundings,
                         columns);
        for (std::int32_t col = levelPartSize; col + levelPartSize + surroundings < stack.cols;
             col += levelPartSize) {
            const auto first = columns.begin() + col;
            if (std::all_of(first - surroundings, first + levelPartSize + surroundings,
                            [](std::uint8_t mark) { return mark != 0; })) {
                parts.push_back(PartAt(stack, col, squareRow));
            }
        }
    }
    return parts;
}

/// Takes the triangles of a level part out of those that are drawn. True if there were any.
bool TakeOut(const LevelPart& part, SquareBytes& squares) {
    constexpr unsigned drawUpper = drawUpperFront | drawUpperBack;
    unsigned drawn = 0;
    for (std::int32_t squareRow = part.squareRow; squareRow < part.squareRow + levelPartSize;
         ++squareRow) {
        std::uint8_t* bytes = squares.Row(squareRow);
        for (std::int32_t col = part.col; col < part.col + levelPartSize; ++col) {
            drawn |= bytes[col] & drawUpper;
            bytes[col] = static_cast<std::uint8_t>(bytes[col] & ~drawUpper);
        }
    }
    return drawn != 0;
}

}  // namespace

void MergeLevelParts(ChosenTriangles& chosen, const SquareBytes& level) {
    for (const LevelPart& part : FindLevelParts(chosen.stack, level.All())) {
        if (TakeOut(part, chosen.layers[part.layer])) {
            chosen.levelParts.push_back(part);
        }
    }
}

void AppendCorners(const LevelPart& part, float spacing, std::vector<MeshVertex>& corners) {
    const float left = static_cast<float>(part.col - 1) * spacing;
    const float right = static_cast<float>(part.col + levelPartSize + 1) * spacing;
    const float front = static_cast<float>(part.squareRow - 1) * spacing;
    const float back = static_cast<float>(part.squareRow + levelPartSize + 1) * spacing;
    const auto corner = [&](float x, float y) {
        corners.push_back({{x, y, part.height}, {0.0f, 0.0f, 1.0f}});
    };
    corner(left, front);
    corner(right, front);
    corner(left, back);
    corner(right, front);
    corner(right, back);
    corner(left, back);
}

}  // namespace zelmo
