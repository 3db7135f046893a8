#pragma once

#include <cstdint>
#include <optional>

namespace zelmo {

/// A GDS layer that a mask is drawn on.
struct MaskLayer {
    std::uint32_t layer = 0;
    std::optional<std::uint32_t> datatype;  ///< none: polygons of any

    bool operator==(const MaskLayer&) const = default;
};

}  // namespace zelmo
