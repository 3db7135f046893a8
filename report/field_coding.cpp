#include "report/field_coding.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace zelmo {

namespace {

constexpr std::size_t planeCount = 4;

/// Of large fields every few rows tell what others are like.
constexpr std::size_t mostCostedCells = 20000;

/// Below a quarter of what 32 bits hold, so that differences fit.
constexpr double mostQuanta = (1 << 30) - 1;

std::int32_t Quanta(float height) {
    const double quanta = std::round(static_cast<double>(height) / pageQuantum);
    return std::isnan(quanta)
               ? 0
               : static_cast<std::int32_t>(std::clamp(quanta, -mostQuanta, mostQuanta));
}

/// Small numbers of either sign as small ones: 0, -1, 1, -2 are 0, 1, 2, 3.
std::uint32_t ZigZag(std::int32_t value) {
    return (static_cast<std::uint32_t>(value) << 1) ^ static_cast<std::uint32_t>(value >> 31);
}

std::int32_t UndoZigZag(std::uint32_t code) {
    return static_cast<std::int32_t>((code >> 1) ^ (0U - (code & 1)));
}

/// What a cell is expected to be: as in the base, or as the cell to its left, or in the first
/// column as the one in front of it.
std::int32_t Expected(const Field& field, const Field* base, std::size_t columns, std::size_t i) {
    if (base != nullptr) {
        return (*base)[i];
    }
    if (i % columns != 0) {
        return field[i - 1];
    }
    return i == 0 ? 0 : field[i - columns];
}

}  // namespace

Field TakeField(const SharedArray<float>& surface, std::int32_t columns, const PageGrid& grid) {
    Field field;
    field.reserve(grid.CellCount());
    for (const std::int32_t row : grid.rows) {
        const float* const heights = surface.data() + std::ptrdiff_t{row} * columns;
        for (const std::int32_t col : grid.cols) {
            field.push_back(Quanta(heights[col]));
        }
    }
    return field;
}

std::vector<std::uint8_t> PlanesOf(const Field& field, const Field* base, std::size_t columns) {
    std::vector<std::uint8_t> planes(field.size() * planeCount);
    for (std::size_t i = 0; i < field.size(); ++i) {
        const std::uint32_t code = ZigZag(field[i] - Expected(field, base, columns, i));
        for (std::size_t plane = 0; plane < planeCount; ++plane) {
            planes[plane * field.size() + i] = static_cast<std::uint8_t>(code >> (8 * plane));
        }
    }
    return planes;
}

Field FieldOf(std::span<const std::uint8_t> planes, const Field* base, std::size_t columns) {
    Field field(planes.size() / planeCount);
    for (std::size_t i = 0; i < field.size(); ++i) {
        std::uint32_t code = 0;
        for (std::size_t plane = 0; plane < planeCount; ++plane) {
            code |= static_cast<std::uint32_t>(planes[plane * field.size() + i]) << (8 * plane);
        }
        field[i] = Expected(field, base, columns, i) + UndoZigZag(code);
    }
    return field;
}

std::uint64_t CodingCost(const Field& field, const Field* base, std::size_t columns) {
    const std::size_t rowStep = std::max<std::size_t>(field.size() / mostCostedCells, 1) * columns;
    std::uint64_t bits = 0;
    std::int32_t last = 0;
    for (std::size_t start = 0; start < field.size(); start += rowStep) {
        for (std::size_t i = start; i < start + columns; ++i) {
            const std::int32_t difference = field[i] - Expected(field, base, columns, i);
            // Differences that repeat cost next to nothing, whatever they are.
            bits += difference == last
                        ? 0
                        : static_cast<std::uint64_t>(std::bit_width(ZigZag(difference)));
            last = difference;
        }
    }
    return bits;
}

}  // namespace zelmo
