#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "gds/placement_key.h"

namespace zelmo {

/// The polygons of a cell and of all below it, under the linear part of a placement and relative to
/// its offset. Another offset moves them rigidly, as long as no coordinate leaves 32 bits.
struct PlacedContent {
    bool empty = true;        ///< there are no polygons
    bool allSmall = true;     ///< every polygon is below the least size
    std::uint64_t small = 0;  ///< polygons below the least size
    bool bounded = true;      ///< the boxes have all of their sides within 32 bits
    GdsRect polygonBox;       ///< around the boxes of all polygons, if there are any
    GdsRect wholeBox;         ///< around those and the boxes stored in the cells
};

/// Whether the boxes still lie within 32 bits at all of the given offsets.
bool StaysBounded(const PlacedContent& content, const GdsRect& offsets);

/// Contents of cells under linear parts, each worked out once.
class ContentTable {
public:
    /// Polygons whose placed box is lower or narrower than `minSize` are small.
    explicit ContentTable(std::int64_t minSize) : minSize_(minSize) {}

    /// Looks at mag, angle and flip of the placement only. Cells are sized and refer to themselves
    /// nowhere, at any depth. Null where the table is full. The result stays where it is.
    const PlacedContent* Of(const GdsCell& cell, const GdsTransform& transform);

private:
    /// Instances of a cell below another.
    struct Child {
        PlacementKey key;  ///< without offset
        GdsRect offsets;
        std::uint64_t instances = 0;
    };

    /// A content that is being worked out.
    struct Visit {
        PlacementKey key;  ///< without offset
        std::vector<Child> children;
        std::size_t next = 0;  ///< the first child whose content may be missing
    };

    static Visit BeginVisit(const PlacementKey& key);
    PlacedContent WorkOut(const Visit& visit) const;
    void AddChild(PlacedContent& content, const Child& child) const;

    std::int64_t minSize_;
    std::unordered_map<PlacementKey, PlacedContent, PlacementKeyHash> contents_;
};

}  // namespace zelmo
