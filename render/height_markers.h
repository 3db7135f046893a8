#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

struct CoverCell;
struct Grid;

/// A sampled point of the exposed surface. 28 bytes, uploaded as they stand.
struct MarkerVertex {
    float position[3] = {0.0f, 0.0f, 0.0f};
    float normal[3] = {0.0f, 0.0f, 0.0f};
    float weight = 0.95f;
};
static_assert(sizeof(MarkerVertex) == 28);

/// A lattice of ten columns of sample points over the location window. Vertex j * 10 + i is marker
/// column i, marker row j.
struct HeightMarkers {
    std::uint32_t rowCount = 0;
    float pitch = 0.0f;  ///< distance between markers, in cells
    std::vector<MarkerVertex> vertices;
};

/// Samples the cover map of a grid at every marker.
HeightMarkers SampleHeightMarkers(const Grid& grid, std::span<const CoverCell> coverMap);

}  // namespace zelmo
