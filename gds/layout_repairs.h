#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zelmo {

struct PathFaults;

/// What was read of a layout though it would have been refused, and how often. A path can count
/// under several kinds.
struct LayoutRepairs {
    std::size_t repeatedPoints = 0;   ///< paths
    std::size_t collinearPoints = 0;  ///< paths
    std::size_t refusedEnds = 0;      ///< paths
    std::size_t noLength = 0;         ///< paths
    std::size_t missingCells = 0;     ///< references
    std::string firstMissingCell;     ///< the name in the first of these

    bool operator==(const LayoutRepairs&) const = default;
};

/// Counts one path.
void CountPath(LayoutRepairs& repairs, const PathFaults& faults);

/// Adds those of paths that were read elsewhere.
void AddPaths(LayoutRepairs& repairs, const LayoutRepairs& others);

/// A line for each kind: how many there are, and what became of them.
std::vector<std::string> RepairLines(const LayoutRepairs& repairs);

}  // namespace zelmo
