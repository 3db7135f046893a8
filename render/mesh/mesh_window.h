#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "model/process_model.h"

namespace zelmo {

/// The part of a layer's grid that its mesh covers, in mesh columns and rows: all but the margin.
struct MeshWindow {
    MeshWindow(const Layer& source, std::int32_t leftCols, std::int32_t frontRows)
        : layer(source),
          // A margin below nothing comes from a position that single precision cannot hold.
          marginCols(std::max(leftCols, 0)),
          marginRows(std::max(frontRows, 0)) {
        const std::int64_t width = std::int64_t{source.cols} - 2 * std::int64_t{marginCols};
        const std::int64_t height = std::int64_t{source.rows} - 2 * std::int64_t{marginRows};
        if (width > 0 && height > 0) {
            cols = static_cast<std::int32_t>(width);
            rows = static_cast<std::int32_t>(height);
        }
    }

    std::size_t GridIndex(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row + marginRows) * static_cast<std::size_t>(layer.cols) +
               static_cast<std::size_t>(col + marginCols);
    }

    /// Whether the layer exists at a cell: its thickness is anything but exactly zero, NaN too.
    bool IsThick(std::int32_t col, std::int32_t row) const {
        const std::size_t i = GridIndex(col, row);
        return !(layer.top[i] - layer.bottom[i] == 0.0f);
    }

    const Layer& layer;
    std::int32_t marginCols;
    std::int32_t marginRows;
    std::int32_t cols = 0;
    std::int32_t rows = 0;
};

}  // namespace zelmo
