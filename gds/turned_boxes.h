#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "gds/layout_contents.h"
#include "gds/placement_key.h"

namespace zelmo {

/// Cells under the linear parts of placements, each with the box of all shapes in it, relative to
/// the placement's offset. Cells as they are drawn come children first. There is no box where there
/// were too many turns in a cell or in one that it contains; the empty one where there are no
/// shapes.
class TurnedBoxes {
public:
    TurnedBoxes(const GdsDatabase& database, const ContentLimits& limits)
        : database_(database), limits_(limits), drawn_(database.cells.size()) {}

    /// The box of a cell as it is drawn. All that it contains was asked for before.
    const std::optional<GdsRect>& Find(std::size_t cell);

    /// The same under the linear part of a placement; the cell itself was asked for before, too.
    std::optional<GdsRect> FindTurned(std::size_t cell, const GdsTransform& transform);

private:
    struct Child {
        PlacementKey key;  ///< without offset
        GdsRect offsets;
    };
    struct Visit {
        PlacementKey key;
        std::vector<Child> turned;
        std::size_t next = 0;                      ///< the first child whose box may be missing
        std::optional<GdsRect> drawn = GdsRect();  ///< of all children that are not turned
    };

    std::size_t NumberOf(const GdsCell& cell) const;
    void AddChild(Visit& visit, const PlacementKey& key, const GdsRect& offsets);
    Visit BeginVisit(const PlacementKey& key);
    std::optional<GdsRect> WorkOut(const Visit& visit);
    std::optional<GdsRect> WorkOutFrom(const PlacementKey& key);

    const GdsDatabase& database_;
    ContentLimits limits_;
    std::uint64_t turnedElements_ = 0;
    std::vector<std::optional<GdsRect>> drawn_;
    std::unordered_map<PlacementKey, std::optional<GdsRect>, PlacementKeyHash> boxes_;
    std::vector<Visit> path_;
};

}  // namespace zelmo
