#pragma once

#include <cstddef>
#include <cstdint>

#include "model/grid/shown_window.h"
#include "model/stack.h"

namespace zelmo {

/// The part of a layer that its mesh covers.
struct MeshWindow : ShownWindow {
    MeshWindow(const Layer& source, std::int32_t leftCols, std::int32_t frontRows)
        : ShownWindow(FindShownWindow(source.cols, source.rows, leftCols, frontRows)),
          layer(source) {}

    /// Whether the layer exists at a cell: its thickness is anything but exactly zero, NaN too.
    bool IsThick(std::int32_t col, std::int32_t row) const {
        const std::size_t i = GridIndex(col, row);
        return !(layer.top[i] - layer.bottom[i] == 0.0f);
    }

    const Layer& layer;
};

}  // namespace zelmo
