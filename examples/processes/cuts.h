#pragma once

#include <cstdint>

#include "examples/gds_writer.h"

// Squares that are drawn again and again: contacts and vias. Lengths in nm.

namespace zelmo {

/// A row, column or field of squares: the centre of the first, how many in x and y, and their
/// pitch.
struct Cuts {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t columns = 1;
    std::int32_t rows = 1;
    std::int32_t pitch = 0;
};

inline void DrawCuts(GdsWriter& gds, GdsWriter::Layer layer, std::int32_t size, const Cuts& cuts) {
    for (std::int32_t column = 0; column < cuts.columns; ++column) {
        for (std::int32_t row = 0; row < cuts.rows; ++row) {
            const std::int32_t x = cuts.x + column * cuts.pitch;
            const std::int32_t y = cuts.y + row * cuts.pitch;
            gds.Rectangle(layer, x - size / 2, y - size / 2, x + size / 2, y + size / 2);
        }
    }
}

}  // namespace zelmo
