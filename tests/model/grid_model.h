#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "model/grid/neighbour_table.h"
#include "model/process_model.h"

namespace zelmo {

/// Gives an empty grid a size and its tables.
inline void SetUpGrid(Grid& grid, std::int32_t cols, std::int32_t rows, float spacing) {
    grid.columns = cols;
    grid.rows = rows;
    grid.spacing = spacing;
    BuildNeighbourTable(grid.neighbours, rows, cols, spacing);
    BuildDistanceIndex(grid);
}

/// Gives an empty model a grid of this size with its tables and a cover map of zeros.
inline void SetUpGrid(ProcessModel& model, std::int32_t cols, std::int32_t rows, float spacing) {
    SetUpGrid(model.grid, cols, rows, spacing);
    model.settings.windowWidth = static_cast<float>(cols - 1) * spacing / 1.2f;
    model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{});
}

/// Appends a layer of this thickness everywhere on the given height and returns it.
inline Layer& AppendFlatLayer(ProcessModel& model, float bottom, float thickness,
                              std::string material = "") {
    auto layer = CreateLayer(model.grid);
    layer->bottom.assign(model.grid.CellCount(), bottom);
    layer->top.assign(model.grid.CellCount(), bottom + thickness);
    layer->material = std::move(material);
    AppendLayer(model.stack, std::move(layer));
    return *model.stack.layers.back();
}

inline std::size_t CellAt(const ProcessModel& model, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(model.grid.columns) +
           static_cast<std::size_t>(col);
}

/// Random numbers that are the same on every platform.
class TestRandom {
public:
    explicit TestRandom(std::uint32_t seed) : engine_(seed) {}

    /// 0 to `limit` - 1.
    std::uint32_t Below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(engine_()) % limit;
    }
    /// 0 to 1, with 24 digits.
    float Unit() { return static_cast<float>(Below(1U << 24)) / 16777216.0f; }
    std::uint32_t Bits() { return static_cast<std::uint32_t>(engine_()); }

private:
    std::mt19937 engine_;
};

/// The bits of floats, for comparisons in which a NaN equals itself and the sign of a zero counts.
inline std::vector<std::uint32_t> BitsOf(std::span<const float> values) {
    std::vector<std::uint32_t> bits;
    bits.reserve(values.size());
    for (const float value : values) {
        // The sign and payload of a NaN depend on the order of an operation's operands.
        bits.push_back(value != value ? 0x7FC00000U : std::bit_cast<std::uint32_t>(value));
    }
    return bits;
}

inline std::vector<std::uint32_t> BitsOf(std::span<const CoverCell> cells) {
    std::vector<float> heights;
    heights.reserve(cells.size());
    for (const CoverCell& cell : cells) {
        heights.push_back(cell.height);
    }
    std::vector<std::uint32_t> bits = BitsOf(std::span<const float>(heights));
    for (const CoverCell& cell : cells) {
        bits.push_back(static_cast<std::uint32_t>(cell.layerId));
    }
    return bits;
}

/// 64-bit FNV-1a over the little-endian bytes of 32-bit words.
class WordHash {
public:
    void Take(std::uint32_t word) {
        for (int shift = 0; shift < 32; shift += 8) {
            value_ = (value_ ^ ((word >> shift) & 0xFFU)) * 1099511628211ULL;
        }
    }
    void Take(std::int32_t number) { Take(static_cast<std::uint32_t>(number)); }
    /// A negative zero counts as zero.
    void Take(float number) { Take(number == 0.0f ? 0U : std::bit_cast<std::uint32_t>(number)); }
    std::uint64_t Value() const { return value_; }

private:
    std::uint64_t value_ = 1469598103934665603ULL;
};

}  // namespace zelmo
