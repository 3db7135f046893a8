#pragma once

#include <array>

namespace zelmo {

using Vector3 = std::array<float, 3>;
using Matrix4 = std::array<float, 16>;  ///< column by column: m[4 * column + row]

}  // namespace zelmo
