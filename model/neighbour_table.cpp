#include "model/neighbour_table.h"

#include <cmath>
#include <cstddef>

#include "model/conversions.h"

namespace zelmo {

namespace {

float OffsetLength(std::int32_t squaredCells, float spacing) {
    return std::sqrt(static_cast<float>(squaredCells)) * spacing;
}

template <typename Visit>
void VisitOffsets(std::int32_t rows, std::int32_t cols, Visit visit) {
    for (std::int32_t dy = 1 - rows; dy < rows; ++dy) {
        for (std::int32_t dx = 1 - cols; dx < cols; ++dx) {
            visit(dx, dy, dx * dx + dy * dy);
        }
    }
}

/// For every squared length, the group of equal distances that it belongs to, and for every group
/// the table position of its first entry. Several squared lengths share a group where their roots
/// round to one float.
struct DistanceGroups {
    std::vector<std::int32_t> groupOf;
    std::vector<std::int32_t> firstPosition;
};

DistanceGroups GroupByDistance(std::int32_t rows, std::int32_t cols, float spacing) {
    const std::int32_t longest = (rows - 1) * (rows - 1) + (cols - 1) * (cols - 1);
    std::vector<std::int32_t> offsetCount(static_cast<std::size_t>(longest) + 1, 0);
    VisitOffsets(rows, cols, [&](std::int32_t, std::int32_t, std::int32_t squaredCells) {
        ++offsetCount[static_cast<std::size_t>(squaredCells)];
    });

    DistanceGroups groups;
    groups.groupOf.assign(offsetCount.size(), 0);
    std::int32_t position = 0;
    float groupDistance = 0.0f;
    for (std::size_t squaredCells = 0; squaredCells < offsetCount.size(); ++squaredCells) {
        if (offsetCount[squaredCells] == 0) {
            continue;
        }
        const float distance = OffsetLength(static_cast<std::int32_t>(squaredCells), spacing);
        if (groups.firstPosition.empty() || distance != groupDistance) {
            groups.firstPosition.push_back(position);
            groupDistance = distance;
        }
        groups.groupOf[squaredCells] = static_cast<std::int32_t>(groups.firstPosition.size()) - 1;
        position += offsetCount[squaredCells];
    }
    return groups;
}

}  // namespace

// The distance grows with the squared length, an integer, so that counting takes the place of a
// comparison sort: no second array of the table's size, and entries of one distance keep the order
// of their making.
void BuildNeighbourTable(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                         float spacing) {
    table.entries.clear();
    table.count = 0;
    if (rows < 1 || cols < 1) {
        return;
    }
    DistanceGroups groups = GroupByDistance(rows, cols, spacing);
    table.count = (2 * rows - 1) * (2 * cols - 1);
    table.entries.resize(static_cast<std::size_t>(table.count));
    VisitOffsets(rows, cols, [&](std::int32_t dx, std::int32_t dy, std::int32_t squaredCells) {
        const std::int32_t group = groups.groupOf[static_cast<std::size_t>(squaredCells)];
        const std::int32_t position = groups.firstPosition[static_cast<std::size_t>(group)]++;
        table.entries[static_cast<std::size_t>(position)] = {dx, dy,
                                                             OffsetLength(squaredCells, spacing)};
    });
}

void BuildDistanceIndex(ProcessModel& model) {
    const std::int32_t slots = model.gridColumns > 0 ? 2 * model.gridColumns : 0;
    model.distanceIndex.assign(static_cast<std::size_t>(slots), 0);
    for (std::int32_t i = 0; i < model.neighbours.count; ++i) {
        const NeighbourOffset& entry = model.neighbours.entries[static_cast<std::size_t>(i)];
        const std::int32_t slot = TruncateToI32(entry.distance / model.gridSpacing);
        // A spacing at the end of the float range can give quotients that are no distance in cells.
        if (slot >= 0 && slot < slots) {
            model.distanceIndex[static_cast<std::size_t>(slot)] = i;
        }
    }
}

std::vector<GridOffset> SelectDiscOffsets(const ProcessModel& model, float radius) {
    std::vector<GridOffset> offsets;
    for (const NeighbourOffset& entry : model.neighbours.entries) {
        if (entry.distance > radius) {
            break;
        }
        offsets.push_back({entry.dx, entry.dy});
    }
    return offsets;
}

// The cell is tested in double precision and the entry's distance in single: where a cell lies on
// the disc's edge the two can disagree.
std::vector<GridOffset> SelectLeavingOffsets(const ProcessModel& model, float radius) {
    const double wideSpacing = model.gridSpacing;
    const double wideRadius = radius;
    std::vector<GridOffset> offsets;
    for (const NeighbourOffset& entry : model.neighbours.entries) {
        if (!(entry.distance > radius)) {
            continue;
        }
        const double nextDx = entry.dx + 1;
        const double dy = entry.dy;
        if (std::sqrt(nextDx * nextDx + dy * dy) * wideSpacing <= wideRadius) {
            offsets.push_back({entry.dx, entry.dy});
        }
    }
    return offsets;
}

}  // namespace zelmo
