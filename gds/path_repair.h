#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "gds/gds_point.h"
#include "gds/path_outline.h"

namespace zelmo {

/// A path as its records have it.
struct DrawnPath {
    std::span<const GdsPoint> points;
    std::int32_t width = 0;  ///< its magnitude counts
    std::uint16_t pathType = 0;
    bool endsTested = false;            ///< whether it was refused as one with extended ends
    PathExtensions variableExtensions;  ///< of a path that has them
};

/// What a path was refused for.
struct PathFaults {
    bool repeatedPoints = false;
    bool collinearPoints = false;  ///< segments in parallel follow each other
    bool refusedEnds = false;      ///< extended ends fail their test
    bool noLength = false;         ///< there is but one point, if repeated
};

struct RepairedPath {
    std::vector<std::vector<GdsPoint>> outlines;  ///< closed; together they are the path
    PathFaults faults;
};

/// The outline that a path means which ExpandPath refuses, as the format is commonly read. A point
/// counts once, and so does the line through points on it. Where a path folds back it ends half a
/// width beyond the point, and another outline begins. Ends are flush, round, extended by half the
/// width, or by what the path says, as its type tells. A path without length is what its ends are
/// (along the x axis, if that matters); where they are flush, nothing. There is at least one point.
RepairedPath RepairPath(const DrawnPath& path);

}  // namespace zelmo
