#include <algorithm>

#include "base/row_bands.h"
#include "render/mesh/mesh_numbers.h"
#include "render/visible/visible_triangles.h"

namespace zelmo {

namespace {

constexpr std::int32_t fewestRowsToDraw = 16;  // for a thread

/// What a row of squares adds to the vertices of its mesh, and to the indices that are drawn.
struct RowCounts {
    std::uint32_t vertices = 0;
    std::uint32_t indices = 0;
};

std::uint32_t CountDrawn(const std::uint8_t* squares, std::size_t count) {
    std::uint32_t triangles = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned bits = squares[i];
        triangles += ((bits >> 2) & 1) + ((bits >> 3) & 1) + ((bits >> 4) & 1) + ((bits >> 5) & 1);
    }
    return triangles * 3;
}

/// What all rows before each one add, and in the end all rows.
std::vector<RowCounts> CountBefore(const SquareBytes& squares, std::int32_t rows,
                                   std::size_t count) {
    // Each row's own counts stand behind its start until they are summed up.
    std::vector<RowCounts> before(static_cast<std::size_t>(rows) + 1);
    ForRowBands(rows, fewestRowsToDraw, [&](std::int32_t first, std::int32_t end) {
        for (std::int32_t row = first; row < end; ++row) {
            const std::uint8_t* last = row > 0 ? squares.Row(row - 1) : nullptr;
            before[static_cast<std::size_t>(row) + 1] = {
                CountNewVertices(last, squares.Row(row), count),
                CountDrawn(squares.Row(row), count)};
        }
    });
    for (std::size_t i = 1; i < before.size(); ++i) {
        before[i].vertices += before[i - 1].vertices;
        before[i].indices += before[i - 1].indices;
    }
    return before;
}

/// Writes the indices of a row's triangles that are drawn.
void WriteRow(const std::uint8_t* squares, std::size_t count, const NumberRow& front,
              const NumberRow& back, std::uint32_t* out) {
    const auto write = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        out[0] = a;
        out[1] = b;
        out[2] = c;
        out += 3;
    };
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned bits = squares[i];
        if ((bits & ~unsigned{hasSquare}) == 0) {
            continue;
        }
        if ((bits & drawLowerFront) != 0) {
            write(front[i].lower, front[i + 1].lower, back[i].lower);
        }
        if ((bits & drawUpperFront) != 0) {
            write(front[i].upper, front[i + 1].upper, back[i].upper);
        }
        if ((bits & drawLowerBack) != 0) {
            write(front[i + 1].lower, back[i + 1].lower, back[i].lower);
        }
        if ((bits & drawUpperBack) != 0) {
            write(front[i + 1].upper, back[i + 1].upper, back[i].upper);
        }
    }
}

/// Numbers the vertices of some rows of squares and writes the indices that are drawn. Only what is
/// drawn needs numbers: a row's own, and those of the vertices that it shares with the row before.
void WriteRows(const SquareBytes& squares, std::size_t count, const std::vector<RowCounts>& before,
               std::int32_t first, std::int32_t end, std::uint32_t* out) {
    const auto draws = [&](std::int32_t row) {
        const auto i = static_cast<std::size_t>(row);
        return row >= first && row < end && before[i + 1].indices > before[i].indices;
    };
    NumberRow front(count + 1);
    NumberRow back(count + 1);
    std::int32_t numbered = -1;  // the row whose back has its numbers
    for (std::int32_t row = std::max(first - 1, 0); row < end; ++row) {
        if (!draws(row) && !draws(row + 1)) {
            continue;
        }
        front.swap(back);
        if (row == 0 || numbered != row - 1) {
            MarkBackRow(row > 0 ? squares.Row(row - 1) : nullptr, count, front);
        }
        const RowCounts& start = before[static_cast<std::size_t>(row)];
        NumberSquareRow(squares.Row(row), count, front, back, start.vertices);
        numbered = row;
        if (draws(row)) {
            WriteRow(squares.Row(row), count, front, back, out + start.indices);
        }
    }
}

void WriteIndices(const ChosenTriangles& chosen, std::size_t layer,
                  BareVector<std::uint32_t>& indices) {
    const LayerStack& stack = chosen.stack;
    const SquareBytes& squares = chosen.layers[layer];
    const std::int32_t rows = stack.rows - 1;
    const std::vector<RowCounts> before = CountBefore(squares, rows, stack.Squares());
    indices.clear();  // so that growing copies nothing
    indices.resize(before.back().indices + 6 * stack.Squares());
    ForRowBands(rows, fewestRowsToDraw, [&](std::int32_t first, std::int32_t end) {
        WriteRows(squares, stack.Squares(), before, first, end, indices.data());
    });
    std::size_t count = before.back().indices;
    VisitWall(stack.layers[layer], before.back().vertices,
              [&](std::int32_t, bool, std::uint32_t number, bool) { indices[count++] = number; });
    indices.resize(count);
}

}  // namespace

void FindDrawnTriangles(const ChosenTriangles& chosen, std::size_t slot,
                        BareVector<std::uint32_t>& indices) {
    const std::vector<std::size_t>& slots = chosen.stack.slots;
    const auto layer = std::ranges::lower_bound(slots, slot) - slots.begin();
    WriteIndices(chosen, static_cast<std::size_t>(layer), indices);
}

}  // namespace zelmo
