#include "tests/plain/neighbour_table_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zelmo {

void SortNeighbourTablePlain(std::vector<NeighbourOffset>& entries) {
    const std::size_t count = entries.size();
    if (count < 3) {
        return;
    }
    std::vector<NeighbourOffset> scratch(count);
    for (std::size_t width = 1; width < count; width *= 2) {
        for (std::size_t start = 0; start + width < count; start += 2 * width) {
            const std::size_t middle = start + width;
            const std::size_t end = std::min(start + 2 * width, count);
            std::size_t left = start;
            std::size_t right = middle;
            std::size_t out = start;
            while (left < middle && right < end) {
                if (entries[right].distance >= entries[left].distance) {
                    scratch[out++] = entries[left++];
                } else {
                    scratch[out++] = entries[right++];
                }
            }
            while (left < middle) {
                scratch[out++] = entries[left++];
            }
            while (right < end) {
                scratch[out++] = entries[right++];
            }
            for (std::size_t i = start; i < end; ++i) {
                entries[i] = scratch[i];
            }
        }
    }
}

void BuildNeighbourTablePlain(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                              float spacing) {
    table.entries.clear();
    for (std::int32_t dy = 1 - rows; dy <= rows - 1; ++dy) {
        for (std::int32_t dx = 1 - cols; dx <= cols - 1; ++dx) {
            const float squares = static_cast<float>(dx * dx + dy * dy);
            table.entries.push_back({dx, dy, std::sqrt(squares) * spacing});
        }
    }
    table.count = static_cast<std::int32_t>(table.entries.size());
    SortNeighbourTablePlain(table.entries);
}

std::vector<GridOffset> SelectDiscOffsetsPlain(const Grid& grid, float radius) {
    std::vector<GridOffset> offsets;
    std::int32_t i = 0;
    while (i < grid.neighbours.count &&
           !(grid.neighbours.entries[static_cast<std::size_t>(i)].distance > radius)) {
        const NeighbourOffset& entry = grid.neighbours.entries[static_cast<std::size_t>(i)];
        offsets.push_back({entry.dx, entry.dy});
        ++i;
    }
    return offsets;
}

std::vector<GridOffset> SelectLeavingOffsetsPlain(const Grid& grid, float radius) {
    std::vector<GridOffset> offsets;
    for (const NeighbourOffset& entry : grid.neighbours.entries) {
        const double dx = static_cast<double>(entry.dx) + 1.0;
        const double dy = static_cast<double>(entry.dy);
        const double next = std::sqrt(dx * dx + dy * dy) * static_cast<double>(grid.spacing);
        if (next <= static_cast<double>(radius) && entry.distance > radius) {
            offsets.push_back({entry.dx, entry.dy});
        }
    }
    return offsets;
}

}  // namespace zelmo
