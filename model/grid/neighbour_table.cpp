#include "model/grid/neighbour_table.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

namespace zelmo {

namespace {

float OffsetLength(std::int32_t squaredCells, float spacing) {
    return std::sqrt(static_cast<float>(squaredCells)) * spacing;
}

/// Rings around the cell, from the inside out, with their offsets sorted. The distance grows with
/// the squared length, an integer, so that counting takes the place of a comparison sort; ring by
/// ring the counts stay small. Offsets of equal distance make a group: also those of neighbouring
/// squared lengths whose roots round to one float. Sorted are the offsets with dx and dy from 0 up;
/// all others are their mirror images.
class RingWalk {
public:
    RingWalk(std::int32_t rows, std::int32_t cols, float spacing)
        : cols_(cols),
          spacing_(spacing),
          endOfAll_((rows - 1) * (rows - 1) + (cols - 1) * (cols - 1) + 1),
          nextDx_(static_cast<std::size_t>(rows), 0) {}

    bool AtEnd() const { return end_ == endOfAll_; }

    /// The offsets of the next ring in table order.
    std::span<const NeighbourOffset> NextRing() {
        ++radius_;
        SetGroups();
        FindOffsets();
        SortOffsets();
        table_.resize(4 * sorted_.size());
        NeighbourOffset* end = table_.data();
        std::size_t first = 0;
        for (std::size_t group = 0; group < groupEnd_.size(); ++group) {
            end = AppendGroup(end, {sorted_.data() + first, sorted_.data() + groupEnd_[group]},
                              groupDistance_[group]);
            first = groupEnd_[group];
        }
        return {table_.data(), end};
    }

private:
    struct FoundOffset {
        GridOffset offset;
        std::int32_t group = 0;
    };

    /// Takes the squared lengths up to the next whole radius, and on while the distance stays.
    void SetGroups() {
        begin_ = end_;
        groupOf_.clear();
        groupDistance_.clear();
        const std::int32_t wanted = static_cast<std::int32_t>(
            std::min<std::int64_t>(endOfAll_, static_cast<std::int64_t>(radius_) * radius_));
        float last = std::numeric_limits<float>::quiet_NaN();
        for (end_ = begin_; end_ < endOfAll_; ++end_) {
            const float distance = OffsetLength(end_, spacing_);
            if (distance != last) {
                if (end_ >= wanted) {
                    break;
                }
                groupDistance_.push_back(distance);
                last = distance;
            }
            groupOf_.push_back(static_cast<std::int32_t>(groupDistance_.size()) - 1);
        }
    }

    /// In order of dy, then dx. Each row goes on where the last ring ended.
    void FindOffsets() {
        found_.clear();
        const auto rows = static_cast<std::int32_t>(nextDx_.size());
        for (std::int32_t dy = 0; dy < rows && dy * dy < end_; ++dy) {
            std::int32_t& dx = nextDx_[static_cast<std::size_t>(dy)];
            for (; dx < cols_ && dx * dx + dy * dy < end_; ++dx) {
                found_.push_back(
                    {{dx, dy}, groupOf_[static_cast<std::size_t>(dx * dx + dy * dy - begin_)]});
            }
        }
    }

    void SortOffsets() {
        groupEnd_.assign(groupDistance_.size() + 1, 0);
        for (const FoundOffset& found : found_) {
            ++groupEnd_[static_cast<std::size_t>(found.group) + 1];
        }
        for (std::size_t group = 1; group < groupEnd_.size(); ++group) {
            groupEnd_[group] += groupEnd_[group - 1];
        }
        sorted_.resize(found_.size());
        for (const FoundOffset& found : found_) {
            sorted_[groupEnd_[static_cast<std::size_t>(found.group)]++] = found.offset;
        }
        groupEnd_.pop_back();
    }

    /// A group with its mirror images, in order of dy, then dx.
    static NeighbourOffset* AppendGroup(NeighbourOffset* end, std::span<const GridOffset> group,
                                        float distance) {
        for (std::size_t last = group.size(); last > 0;) {
            std::size_t first = last - 1;
            while (first > 0 && group[first - 1].dy == group[first].dy) {
                --first;
            }
            end = AppendRow(end, group.subspan(first, last - first), -1, distance);
            last = first;
        }
        for (std::size_t first = 0; first < group.size();) {
            std::size_t last = first + 1;
            while (last < group.size() && group[last].dy == group[first].dy) {
                ++last;
            }
            if (group[first].dy != 0) {
                end = AppendRow(end, group.subspan(first, last - first), 1, distance);
            }
            first = last;
        }
        return end;
    }

    static NeighbourOffset* AppendRow(NeighbourOffset* end, std::span<const GridOffset> row,
                                      std::int32_t side, float distance) {
        for (std::size_t i = row.size(); i-- > 0;) {
            if (row[i].dx != 0) {
                *end++ = {-row[i].dx, side * row[i].dy, distance};
            }
        }
        for (const GridOffset& offset : row) {
            *end++ = {offset.dx, side * offset.dy, distance};
        }
        return end;
    }

    std::int32_t cols_ = 0;
    float spacing_ = 0.0f;
    std::int32_t endOfAll_ = 0;         ///< of the squared lengths
    std::vector<std::int32_t> nextDx_;  ///< for each dy, the first one beyond the last ring
    std::int32_t radius_ = 0;
    std::int32_t begin_ = 0;  ///< the ring's squared lengths
    std::int32_t end_ = 0;
    std::vector<std::int32_t> groupOf_;  ///< each of the ring's squared lengths
    std::vector<float> groupDistance_;
    std::vector<FoundOffset> found_;
    std::vector<std::size_t> groupEnd_;
    std::vector<GridOffset> sorted_;
    std::vector<NeighbourOffset> table_;
};

/// The entries farther than `radius`: none for a NaN.
std::span<const NeighbourOffset> EntriesBeyond(const NeighbourTable& table, float radius) {
    const auto first = std::partition_point(
        table.entries.begin(), table.entries.end(),
        [radius](const NeighbourOffset& entry) { return !(entry.distance > radius); });
    return {first, table.entries.end()};
}

}  // namespace

void BuildNeighbourTable(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                         float spacing) {
    table.entries.clear();
    table.count = 0;
    if (rows < 1 || cols < 1) {
        return;
    }
    const std::int32_t count = (2 * rows - 1) * (2 * cols - 1);
    table.entries.reserve(static_cast<std::size_t>(count));
    for (RingWalk walk(rows, cols, spacing); !walk.AtEnd();) {
        const std::span<const NeighbourOffset> ring = walk.NextRing();
        table.entries.insert(table.entries.end(), ring.begin(), ring.end());
    }
    table.count = count;
}

// Distances in cells ascend with the table, so that each slot's entries follow on those of the slot
// before. They are looked for from there on, in steps of about a ring.
void BuildDistanceIndex(Grid& grid) {
    const std::vector<NeighbourOffset>& entries = grid.neighbours.entries;
    const std::int32_t slots = grid.columns > 0 ? 2 * grid.columns : 0;
    grid.distanceIndex.assign(static_cast<std::size_t>(slots), 0);
    // A spacing at the end of the float range can give quotients that are no distance in cells.
    const auto cellsOf = [&](const NeighbourOffset& entry) {
        return entry.distance / grid.spacing;
    };
    auto begin = entries.begin();
    for (std::int32_t slot = 0; slot < slots && begin != entries.end(); ++slot) {
        const auto isBefore = [&](const NeighbourOffset& entry) {
            return cellsOf(entry) < static_cast<float>(slot + 1);
        };
        const std::ptrdiff_t ring = 8 * static_cast<std::ptrdiff_t>(slot) + 8;
        auto end = begin;
        while (entries.end() - end > ring && isBefore(end[ring])) {
            end += ring;
        }
        end = std::partition_point(end, end + std::min(ring, entries.end() - end), isBefore);
        if (end != begin && cellsOf(end[-1]) >= static_cast<float>(slot)) {
            grid.distanceIndex[static_cast<std::size_t>(slot)] =
                static_cast<std::int32_t>(end - entries.begin()) - 1;
        }
        begin = end;
    }
}

std::vector<GridOffset> SelectDiscOffsets(const Grid& grid, float radius) {
    const std::size_t count =
        grid.neighbours.entries.size() - EntriesBeyond(grid.neighbours, radius).size();
    std::vector<GridOffset> offsets;
    offsets.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        offsets.push_back({grid.neighbours.entries[i].dx, grid.neighbours.entries[i].dy});
    }
    return offsets;
}

// The cell is tested in double precision and the entry's distance in single: where a cell lies on
// the disc's edge the two can disagree.
std::vector<GridOffset> SelectLeavingOffsets(const Grid& grid, float radius) {
    const double wideSpacing = grid.spacing;
    const double wideRadius = radius;
    // An offset is at most one cell longer than the one that it leads to next; the factor and the
    // last term are more than all roundings, of ordinary and of the smallest numbers.
    const double farthest = (wideRadius + wideSpacing) * (1.0 + 1e-6) + 1e-44;
    const bool isEndless = farthest > static_cast<double>(std::numeric_limits<float>::max());
    std::vector<GridOffset> offsets;
    for (const NeighbourOffset& entry : EntriesBeyond(grid.neighbours, radius)) {
        if (!isEndless && static_cast<double>(entry.distance) > farthest) {
            break;
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
