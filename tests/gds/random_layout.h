#pragma once

#include <cstdint>
#include <random>

#include "gds/gds_database.h"

namespace zelmo {

/// A number from `least` to `greatest`, the same on every platform.
std::int64_t RandomInteger(std::mt19937& random, std::int64_t least, std::int64_t greatest);

/// What a random layout is made of.
struct RandomLayoutSettings {
    std::int32_t cells = 6;
    std::int64_t reach = 2000;           ///< greatest coordinate of polygons and origins
    std::int32_t arraySide = 5;          ///< most columns and rows
    bool strangeMagnifications = false;  ///< also 0, negative, infinite and no number
};

/// Cells with polygons, references and arrays in all placements. References are bound and lead in
/// no circle; boundaries have their boxes, cells are not sized.
GdsDatabase RandomLayout(std::mt19937& random, const RandomLayoutSettings& settings);

/// Cells C0 to C30, each with the next one twice, once turned by an angle of its own: 2^30 places
/// of a rectangle in C30, no two of them turned alike.
GdsDatabase TowerOfTurns();

/// An angle as the reader gives it, often a multiple of 90 degrees.
double RandomAngle(std::mt19937& random);

}  // namespace zelmo
