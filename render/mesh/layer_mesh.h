#pragma once

#include <cstdint>

#include "render/mesh/mesh_vector.h"
#include "render/mesh/mesh_vertex.h"

namespace zelmo {

struct Layer;

/// Triangles of a layer: lower sheet, upper sheet and front wall over the location window.
struct LayerMesh {
    BareVector<MeshVertex> vertices;  ///< only those in use, numbered by first use
    BareVector<std::uint32_t> indices;
};

/// The mesh of a layer without the grid's margin of `marginCols` and `marginRows` cells.
LayerMesh MakeLayerMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows);

}  // namespace zelmo
