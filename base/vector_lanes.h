#pragma once

#include "base/lane_code.h"

// For files of lane kernels only: vectors of three coordinates, one in each lane. The order of the
// sums and products is part of the results.

namespace zelmo::ZELMO_LANES {

struct VectorLanes {
    VectorLanes(const FloatLanes& xLanes, const FloatLanes& yLanes, const FloatLanes& zLanes)
        : x(xLanes), y(yLanes), z(zLanes) {}
    // Copied one by one they can stay in registers; as a whole they are copied through memory.
    VectorLanes(const VectorLanes& other) : x(other.x), y(other.y), z(other.z) {}
    VectorLanes& operator=(const VectorLanes& other) {
        x = other.x;
        y = other.y;
        z = other.z;
        return *this;
    }

    FloatLanes x;
    FloatLanes y;
    FloatLanes z;
};

inline VectorLanes Difference(const VectorLanes& a, const VectorLanes& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline VectorLanes Sum(const VectorLanes& a, const VectorLanes& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline FloatLanes Dot(const VectorLanes& a, const VectorLanes& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline VectorLanes Cross(const VectorLanes& a, const VectorLanes& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

}  // namespace zelmo::ZELMO_LANES
