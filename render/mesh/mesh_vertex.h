#pragma once

namespace zelmo {

/// One vertex of a layer's mesh: position in micrometres, normal of any length. 24 bytes, uploaded
/// as they stand.
struct MeshVertex {
    float position[3];
    float normal[3];
};
static_assert(sizeof(MeshVertex) == 24);

}  // namespace zelmo
