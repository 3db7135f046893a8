#pragma once

#include <cstdint>

#include "render/mesh/layer_mesh.h"

namespace zelmo {

/// The mesh of a layer by full arrays: all vertices of the window with their positions and normals,
/// then all triangles, then a table that compacts the vertices to those in use. Slow and plain;
/// `MakeLayerMesh` must give the same bits. Needs margins that leave a window of at least one cell.
LayerMesh MakeLayerMeshPlain(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows);

}  // namespace zelmo
