#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>

#include "gds/cell_order.h"
#include "gds/cell_places.h"
#include "gds/gds_database.h"
#include "gds/placement_key.h"
#include "gds/turned_boxes.h"

namespace zelmo {

class PlaceCounts;

/// The order of the boxes of places: by the lower side, then the left, the upper and the right one.
/// Moving two boxes alike does not change it.
bool IsBefore(const GdsRect& a, const GdsRect& b);

GdsRect MoveBy(const GdsRect& box, GdsPoint offset);

/// The boxes of a cell, which may be turned.
class BoxesOfCell {
public:
    BoxesOfCell(const GdsDatabase& database, const CellOrder& order, std::size_t cell,
                const PlaceLimits& limits);

    /// That of the cell under the linear part of a placement; none where too much is turned in it.
    std::optional<GdsRect> Under(const GdsTransform& transform);

private:
    TurnedBoxes boxes_;
    std::size_t cell_;
};

/// A cell under the linear part of a placement, with a box that no box of a place in it is before.
/// Of the cell that is looked for it is its own box; otherwise only arrays that are turned can make
/// it one that no place has.
using FirstBoxes = std::unordered_map<PlacementKey, GdsRect, PlacementKeyHash>;
using FirstBox = FirstBoxes::value_type;

/// The first boxes of the cell `start` as it is drawn and of all in it that leads to the target, or
/// none where there are too many.
std::optional<FirstBoxes> FindFirstBoxes(const PlaceCounts& counts, BoxesOfCell& boxes,
                                         const GdsCell& start, const GdsCell& target,
                                         const PlaceLimits& limits);

}  // namespace zelmo
