#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gds/flat_count.h"
#include "gds/gds_database.h"

namespace zelmo {

/// How far places are looked for: so many cells under different turns, so many references and
/// blocks of arrays that are looked at, and so many of these that wait at a time.
struct PlaceLimits {
    std::size_t turns = 500000;
    std::uint64_t steps = 100000000;
    std::size_t waiting = 8000000;
};

/// Where a cell is placed within another, at any depth. Every instance of an array counts.
struct CellPlaces {
    FlatCount count;
    bool hasShapes = true;  ///< whether there is anything to have a box
    /// Of its shapes as they are placed, in units of the layout: the first ones by their lower
    /// side, then the left, the upper and the right one. None where it has no shapes.
    std::vector<GdsRect> boxes;
    bool beyondLimits = false;  ///< the boxes are not known: the limits were too close
};

/// Finds the places of `cell` in the cell `within`, which is another and not endless; at most
/// `most` of their boxes. Only as much of the hierarchy is laid out as these boxes need. Throws
/// std::out_of_range("invalid vector subscript") if an array has no points.
CellPlaces FindPlaces(const GdsDatabase& database, std::size_t within, std::size_t cell,
                      std::size_t most, const PlaceLimits& limits = {});

}  // namespace zelmo
