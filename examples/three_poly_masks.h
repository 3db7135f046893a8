#pragma once

#include <cstdint>

namespace zelmo {

/// The GDS layers of a MEMS process with three layers of polysilicon, as both its layouts draw
/// them.
enum ThreePolyMask : std::uint16_t {
    kPoly0 = 1,
    kDimple = 2,
    kAnchor1 = 3,
    kPoly1 = 4,
    kVia = 5,
    kAnchor2 = 6,
    kPoly2 = 7,
    kMetal = 8,
    kHole1 = 9,
};

}  // namespace zelmo
