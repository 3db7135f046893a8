#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "results/models/layer_area.h"
#include "results/models/surface_facets.h"

namespace zelmo {

/// Nodes of a layer's area (LayerArea::Node).
using NodeTriangle = std::array<std::uint32_t, 3>;

/// A surface of a layer as triangles between the nodes that are kept, counter-clockwise from above.
struct SurfaceTriangles {
    std::vector<std::uint8_t> kept;  ///< by node: whether it is a corner of triangles
    std::vector<NodeTriangle> triangles;
    /// What the volume below this surface has more than that below the surface as drawn, in squares
    /// of the grid times micrometres.
    double volumeChange = 0.0;
};

/// Both surfaces of a layer. No height is moved by more than twice `bound`, in micrometres. Where
/// the surfaces meet, both have the same corners.
struct LayerSurfaces {
    SurfaceTriangles bottom;
    SurfaceTriangles top;
};
LayerSurfaces TriangulateSurfaces(const LayerArea& area, double bound);

}  // namespace zelmo
