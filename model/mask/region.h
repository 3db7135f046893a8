#pragma once

#include <clipper.hpp>
#include <vector>

// Plane regions in whole numbers, as the polygon library knows them.

namespace zelmo {

/// A box, its sides included.
struct RegionBox {
    ClipperLib::cInt left = 0;
    ClipperLib::cInt low = 0;
    ClipperLib::cInt right = 0;
    ClipperLib::cInt high = 0;
};

bool Touch(const RegionBox& a, const RegionBox& b);
/// The box of both.
RegionBox Around(const RegionBox& a, const RegionBox& b);

/// A piece of the plane in one part: its outline counter-clockwise, then its holes clockwise.
struct Region {
    ClipperLib::Paths outlines;
    RegionBox box;  ///< of the first outline
};

/// Coordinates of regions and offsets lie between plus and minus this; the library would take more,
/// but what is computed of them has to be whole numbers in double precision as well.
constexpr ClipperLib::cInt furthestUnit = ClipperLib::cInt{1} << 45;

/// The regions that outlines enclose by the even-odd rule: none for those without area.
std::vector<Region> RegionsOf(const ClipperLib::Paths& outlines);

/// A region grown by an offset above 0 with mitred corners: again a region, or a few.
std::vector<Region> GrowRegion(const Region& region, ClipperLib::cInt offset);

/// The union of regions, of which each pair can overlap. The time can grow with their square.
std::vector<Region> UniteAll(const std::vector<Region>& regions);

/// The outlines of a region that grew by an offset, or shrank by one below 0, with mitred corners:
/// by the even-odd rule. None if nothing is left of it.
ClipperLib::Paths OffsetRegion(const Region& region, ClipperLib::cInt offset);

}  // namespace zelmo
