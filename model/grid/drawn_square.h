#pragma once

#include <cstdint>

namespace zelmo {

// A square of four neighbouring cells is drawn as two flat triangles, which meet on the diagonal
// from its lower right to its upper left cell. A layer has a triangle where it exists at one of the
// triangle's corners at least.

/// What a square of a layer has, as bits.
constexpr std::uint8_t hasFrontTriangle = 1;  ///< its lower left half
constexpr std::uint8_t hasBackTriangle = 2;   ///< its upper right half
constexpr std::uint8_t hasSquare = hasFrontTriangle | hasBackTriangle;

/// The triangles of a square, from whether the layer exists (1) or not (0) at its cells.
inline std::uint8_t DrawnTriangles(unsigned frontLeft, unsigned frontRight, unsigned backLeft,
                                   unsigned backRight) {
    const unsigned diagonal = frontRight | backLeft;
    return static_cast<std::uint8_t>((diagonal | frontLeft) | ((diagonal | backRight) << 1));
}

}  // namespace zelmo
