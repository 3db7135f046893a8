#include "render/roofs.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// How far around a place a roof must reach: a square's shadow on it falls into the first three.
constexpr std::int32_t roofReach = 4;

/// Leaves of a grid's marks those with `roofReach` others on all sides.
void Erode(std::vector<std::uint8_t>& marks, std::size_t cols, std::size_t rows) {
    constexpr std::size_t reach = roofReach;
    constexpr std::size_t line = 2 * reach + 1;
    std::vector<std::uint8_t> narrowed(marks.size());
    for (std::size_t row = 0; row < rows; ++row) {
        const std::uint8_t* in = marks.data() + row * cols;
        std::uint8_t* out = narrowed.data() + row * cols + reach;
        for (std::size_t i = 0; i + line <= cols; ++i) {
            std::uint8_t all = 1;
            for (std::size_t k = 0; k < line; ++k) {
                all &= in[i + k];
            }
            out[i] = all;
        }
    }
    std::fill(marks.begin(), marks.end(), std::uint8_t{0});
    for (std::size_t row = 0; row + line <= rows; ++row) {
        const std::uint8_t* in = narrowed.data() + row * cols;
        std::uint8_t* out = marks.data() + (row + reach) * cols;
        for (std::size_t i = 0; i < cols; ++i) {
            std::uint8_t all = 1;
            for (std::size_t k = 0; k < line; ++k) {
                all &= in[k * cols + i];
            }
            out[i] = all;
        }
    }
}

std::vector<std::uint8_t> FindHiding(const MeshWindow& window, float height, float cover) {
    const auto cols = static_cast<std::size_t>(window.cols);
    std::vector<std::uint8_t> hides(cols * static_cast<std::size_t>(window.rows));
    for (std::int32_t row = 0; row < window.rows; ++row) {
        const float* tops = window.layer.top.data() + window.GridIndex(0, row);
        const float* bottoms = window.layer.bottom.data() + window.GridIndex(0, row);
        std::uint8_t* out = hides.data() + static_cast<std::size_t>(row) * cols;
        for (std::size_t i = 0; i < cols; ++i) {
            const bool isInside = bottoms[i] <= height && height + cover <= tops[i];
            out[i] = isInside ? 1 : 0;
        }
    }
    Erode(hides, cols, static_cast<std::size_t>(window.rows));
    return hides;
}

float HighestTop(const MeshWindow& window) {
    float highest = std::numeric_limits<float>::lowest();
    for (std::int32_t row = 0; row < window.rows; ++row) {
        const float* tops = window.layer.top.data() + window.GridIndex(0, row);
        highest = std::max(highest, *std::max_element(tops, tops + window.cols));
    }
    return highest;
}

}  // namespace

std::vector<Roof> FindRoofs(const LayerStack& stack, const Sight& sight) {
    std::vector<Roof> roofs;
    float highest = std::numeric_limits<float>::lowest();
    bool hasTranslucent = false;
    for (std::size_t place = 0; place < stack.layers.size(); ++place) {
        const MeshWindow& window = stack.layers[place];
        if (!IsOpaque(window.layer)) {
            highest = std::max(highest, HighestTop(window));
            hasTranslucent = true;
        } else if (hasTranslucent) {
            Roof roof{place, highest, FindHiding(window, highest, sight.cover)};
            if (std::find(roof.hides.begin(), roof.hides.end(), 1) != roof.hides.end()) {
                roofs.push_back(std::move(roof));
            }
        }
    }
    return roofs;
}

}  // namespace zelmo
