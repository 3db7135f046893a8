#include "tests/render/gl_test.h"

#include <GL/glew.h>

#include <algorithm>
#include <ostream>

namespace zelmo {

namespace {

class ContextEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        std::string error;
        context = CreateOffscreenGlContext(error);
        ASSERT_NE(context, nullptr) << error;
    }
    void TearDown() override { context.reset(); }

    std::unique_ptr<GlContext> context;
};

ContextEnvironment& TheEnvironment() {
    // Owned by the test framework.
    static auto* environment = static_cast<ContextEnvironment*>(
        ::testing::AddGlobalTestEnvironment(new ContextEnvironment));
    return *environment;
}

[[maybe_unused]] const ContextEnvironment& registered = TheEnvironment();

}  // namespace

GlContext& TestContext() {
    return *TheEnvironment().context;
}

std::ostream& operator<<(std::ostream& out, const Pixel& pixel) {
    return out << '(' << int{pixel.red} << ' ' << int{pixel.green} << ' ' << int{pixel.blue} << ' '
               << int{pixel.alpha} << ')';
}

std::ostream& operator<<(std::ostream& out, const Pixels& picture) {
    return out << picture.width << " by " << picture.height << " pixels, black in "
               << picture.BoxOf(black);
}

std::ostream& operator<<(std::ostream& out, const PixelBox& box) {
    return out << "x " << box.left << " to " << box.right << ", y " << box.bottom << " to "
               << box.top;
}

PixelBox Pixels::BoxOf(const std::function<bool(const Pixel&)>& test) const {
    PixelBox box{width, height, 0, 0};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (test(At(x, y))) {
                box = {std::min(box.left, x), std::min(box.bottom, y), std::max(box.right, x + 1),
                       std::max(box.top, y + 1)};
            }
        }
    }
    return box;
}

PixelBox Pixels::BoxOf(const Pixel& pixel) const {
    return BoxOf([&](const Pixel& other) { return other == pixel; });
}

int Pixels::Count(const Pixel& pixel) const {
    return static_cast<int>(std::count(pixels.begin(), pixels.end(), pixel));
}

std::uint32_t VertexBufferOf(std::uint32_t vertexArray) {
    glBindVertexArray(vertexArray);
    GLint buffer = 0;
    glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &buffer);
    glBindVertexArray(0);
    return static_cast<std::uint32_t>(buffer);
}

Canvas::Canvas(int width, int height) : width_(width), height_(height), buffer_(width, height) {
    GLint framebuffer = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &framebuffer);
    framebuffer_ = static_cast<GLuint>(framebuffer);
    glViewport(0, 0, width, height);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

Pixels Canvas::Read() const {
    Pixels result{width_, height_, {}};
    result.pixels.resize(static_cast<std::size_t>(result.width) *
                         static_cast<std::size_t>(result.height));
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, result.width, result.height, GL_RGBA, GL_UNSIGNED_BYTE,
                 result.pixels.data());
    return result;
}

Camera PlainCamera(double aspect) {
    Camera camera(100.0, 70.0, 10.0, 30.0);
    camera.aspect = aspect;
    camera.transform = identity;
    return camera;
}

Layer& AppendDrawnLayer(ProcessModel& model, StackUploads& uploads, std::array<float, 3> color,
                        std::span<const MeshVertex> vertices,
                        std::span<const std::uint32_t> indices) {
    AppendLayer(model.stack, CreateLayer(Grid{}));
    Layer& layer = *model.stack.layers.back();
    layer.color = color;
    uploads.layers.push_back({layer.version, UploadedMesh(vertices, indices)});
    return layer;
}

Layer& AppendRectangle(ProcessModel& model, StackUploads& uploads, std::array<float, 3> color,
                       float depth, std::array<float, 3> normal) {
    const auto [nx, ny, nz] = normal;
    const std::array<MeshVertex, 4> corners{{{{-1.0f, -1.0f, depth}, {nx, ny, nz}},
                                             {{1.0f, -1.0f, depth}, {nx, ny, nz}},
                                             {{-1.0f, 1.0f, depth}, {nx, ny, nz}},
                                             {{1.0f, 1.0f, depth}, {nx, ny, nz}}}};
    const std::array<std::uint32_t, 6> indices{0, 1, 2, 1, 3, 2};
    return AppendDrawnLayer(model, uploads, color, corners, indices);
}

std::uint32_t TakeGlErrors() {
    const GLenum first = glGetError();
    for (int kinds = 0; kinds < 16 && glGetError() != GL_NO_ERROR; ++kinds) {
    }
    return first;
}

int CountGlObjects() {
    int count = 0;
    for (GLuint name = 1; name < 4096; ++name) {
        count += glIsBuffer(name) + glIsVertexArray(name) + glIsFramebuffer(name) +
                 glIsRenderbuffer(name);
    }
    // Names of lists are not used again by every driver, and soon are large.
    const GLuint next = glGenLists(1);
    glDeleteLists(next, 1);
    for (GLuint name = 1; name < std::max(next, GLuint{4096}); ++name) {
        count += glIsList(name);
    }
    return count;
}

}  // namespace zelmo
