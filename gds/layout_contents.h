#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gds/flat_count.h"
#include "gds/gds_database.h"

// What a layout holds when all cells are laid out flat, worked out cell by cell and never by laying
// them out: arrays of arrays cost no more than what the file has of them. Lengths are database
// units. Boxes are those of the points as an extraction places them, to the bit as long as no
// coordinate leaves 32 bits.

namespace zelmo {

/// What a cell has of its own, and with all that it contains. Of a cell that is endless only its
/// own numbers are told.
struct CellContents {
    std::uint64_t ownShapes = 0;      ///< polygons and paths
    std::uint64_t ownTexts = 0;       ///< that were kept
    std::uint64_t ownPlacements = 0;  ///< of other cells, every instance of an array counted
    FlatCount shapes;
    FlatCount texts;
    GdsRect box;             ///< around all shapes; the empty one where there are none
    bool hasBox = true;      ///< whether the box is known: not where turns are too many to follow
    bool isTop = false;      ///< no other cell refers to it
    bool isEndless = false;  ///< it is, or contains, a cell that contains itself
};

/// How far turns are followed: so many cells under different turns, and so many elements of those
/// that are turned.
struct ContentLimits {
    std::size_t turns = 500000;
    std::uint64_t turnedElements = 50000000;
};

/// The contents of all cells, in the order of the file. References may be unbound; those that point
/// nowhere do not count. Throws std::out_of_range("invalid vector subscript") if an array has no
/// points.
std::vector<CellContents> CountCells(const GdsDatabase& database, const ContentLimits& limits = {});

/// What is drawn on a layer with a datatype, or written there.
struct LayerContents {
    std::uint16_t layer = 0;
    std::uint16_t datatype = 0;  ///< of texts, their type
    FlatCount shapes;
    FlatCount texts;
    double area = 0.0;  ///< of the shapes one by one, in square units; can be infinite, or none
    GdsRect box;        ///< around the shapes; the empty one where there are none
};

struct CellLayers {
    std::vector<LayerContents> layers;  ///< by layer, then by datatype
    bool haveBoxes = true;  ///< whether boxes are known: not where turns are too many to follow
};

/// What a cell and all that it contains have on each layer. The cell is not endless. Throws as
/// CountCells does.
CellLayers CountLayers(const GdsDatabase& database, std::size_t cell,
                       const ContentLimits& limits = {});

/// The area of a polygon, in square units, whichever way round it goes. Where it crosses itself,
/// parts that are enclosed in opposite senses take away from each other.
double AreaOf(const GdsBoundary& boundary);

}  // namespace zelmo
