#pragma once

#include <cstdint>

#include "render/mesh/matrix.h"

namespace zelmo {

/// Where and how finely a picture is drawn.
struct PictureView {
    Matrix4 transform{};  ///< the camera's
    std::int32_t x = 0;   ///< the view on the picture, in pixels
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t subpixelBits = 8;  ///< to which OpenGL rounds the corners of triangles
};

}  // namespace zelmo
