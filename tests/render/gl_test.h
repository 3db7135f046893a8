#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/process_model.h"
#include "render/camera.h"
#include "render/frame_renderer.h"
#include "render/gl/gl_context.h"
#include "render/gl/offscreen_buffer.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/stack_uploads.h"

namespace zelmo {

/// The context that all tests of a program share. It exists while tests run; a machine that has
/// none fails them all, with the reason.
GlContext& TestContext();

struct Pixel {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 0;

    bool operator==(const Pixel&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Pixel& pixel);

constexpr Pixel white{255, 255, 255, 255};
constexpr Pixel black{0, 0, 0, 255};

/// A box of pixels: from left and bottom up to but without right and top.
struct PixelBox {
    int left = 0;
    int bottom = 0;
    int right = 0;
    int top = 0;

    bool operator==(const PixelBox&) const = default;
};
std::ostream& operator<<(std::ostream& out, const PixelBox& box);

/// A picture read back, row 0 at the bottom.
struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<Pixel> pixels;

    const Pixel& At(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x));
    }
    /// The smallest box around all pixels for which the test holds.
    PixelBox BoxOf(const std::function<bool(const Pixel&)>& test) const;
    PixelBox BoxOf(const Pixel& pixel) const;
    int Count(const Pixel& pixel) const;

    bool operator==(const Pixels&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Pixels& picture);

/// The buffer that a vertex array takes its first attribute from.
std::uint32_t VertexBufferOf(std::uint32_t vertexArray);

/// A framebuffer to draw into, white and bound, with the viewport over all of it.
class Canvas {
public:
    Canvas(int width, int height);
    /// Binds the canvas again, where something else has been drawn since.
    Pixels Read() const;

private:
    int width_;
    int height_;
    OffscreenBuffer buffer_;
    std::uint32_t framebuffer_ = 0;
};

/// The project's shaders, and fonts, for one test.
struct TestTools {
    ShaderProgram surfaceShader{"surface.shader"};
    ShaderProgram pointShader{"point.shader"};
    TextFont textFont;

    PictureTools Tools() { return {surfaceShader, pointShader, textFont}; }
};

constexpr Matrix4 identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// A camera whose transform leaves clip coordinates as they are.
Camera PlainCamera(double aspect);

/// Puts a layer without cells on top, ready to be drawn with this mesh.
Layer& AppendDrawnLayer(ProcessModel& model, StackUploads& uploads, std::array<float, 3> color,
                        std::span<const MeshVertex> vertices,
                        std::span<const std::uint32_t> indices);

/// The same with one rectangle in clip coordinates at one depth.
Layer& AppendRectangle(ProcessModel& model, StackUploads& uploads, std::array<float, 3> color,
                       float depth = 0.0f, std::array<float, 3> normal = {0.0f, 0.0f, 1.0f});

/// The first error of OpenGL since it was last asked for; clears all of them.
std::uint32_t TakeGlErrors();

/// How many buffers, vertex arrays, framebuffers, renderbuffers and display lists there are.
int CountGlObjects();

}  // namespace zelmo
