// A user's own surface shader may colour, move, cut or discard what it likes: the picture is that
// of whole meshes with blending, as long as the file does not say that less may be drawn.
#include <GL/glew.h>

#include <algorithm>
#include <string>

#include "base/text.h"
#include "render/highest_surface.h"
#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// What a shader has of its own: the vertex stage places `gl_Position` and passes `place` on, the
/// fragment stage sets `pixel`. Whether that keeps what a shader promises for less to be drawn.
struct OwnShader {
    const char* name;
    bool keepsThePromise;
    const char* vertex;
    const char* fragment;
};

constexpr OwnShader ownShaders[] = {
    {"ColoursByPlace", true, "", "pixel = vec4(fract(place * 3.0), alpha);"},
    {"ColoursByDepth", true, "", "pixel = vec4(fract(gl_FragCoord.zzz * 100000.0), alpha);"},
    {"DiscardsStripes", false, "",
     "if (fract(place.x) < 0.5) discard; pixel = vec4(color, alpha);"},
    {"IsTranslucentInStripes", false, "",
     "pixel = vec4(color, fract(place.x) < 0.5 ? alpha : alpha * 0.3);"},
    {"WritesItsOwnDepth", false, "",
     "pixel = vec4(color, alpha); gl_FragDepth = fract(place.x) < 0.5 ? gl_FragCoord.z : 0.9;"},
    {"LiftsTheLowerPlaces", false,
     "if (position.z < 1.2) gl_Position = transform * vec4(position.xy, position.z + 2.0, 1.0);",
     "pixel = vec4(color, alpha);"},
    {"SetsUpperSheetsBack", false, "gl_Position.z += normal.z > 0.0 ? 0.01 : 0.0;",
     "pixel = vec4(color, alpha);"},
};

void PrintTo(const OwnShader& shader, std::ostream* out) {
    *out << shader.name;
}

std::string TextOf(const OwnShader& shader) {
    return std::string(R"(#shader vertex
#version 330 compatibility
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
uniform mat4 transform;
out vec3 place;
void main() {
    place = position;
    gl_Position = transform * vec4(position, 1.0);
    )") + shader.vertex +
           R"(
}
#shader fragment
#version 330 compatibility
in vec3 place;
uniform vec3 color;
uniform float alpha;
out vec4 pixel;
void main() {
    )" + shader.fragment +
           "\n}\n";
}

constexpr char promise[] = "// zelmo: hidden parts may be left out\n";

class OwnShaderTest : public testing::TestWithParam<OwnShader> {
protected:
    /// Three films, one of them translucent, on a substrate, with a trench and a wall.
    OwnShaderTest() {
        model_->settings.cameraAngle = 40.0f;
        AddFilm(*model_, 1.0f, {0.9f, 0.2f, 0.1f});
        AddFilm(*model_, 0.5f, {0.1f, 0.8f, 0.2f});
        AddFilm(*model_, 0.5f, {0.2f, 0.3f, 0.9f});
        AddFilm(*model_, 0.3f, {0.9f, 0.8f, 0.1f}).alpha = 0.5f;
        const auto row = static_cast<std::ptrdiff_t>(model_->grid.columns);
        for (const auto& layer : model_->stack.layers) {
            std::fill(layer->top.begin() + 50 * row, layer->top.begin() + 60 * row, 1.6f);
            std::transform(layer->top.begin(), layer->top.end(), layer->bottom.begin(),
                           layer->bottom.begin(),
                           [](float top, float bottom) { return std::min(top, bottom); });
        }
        SettleStack(model_->stack, model_->grid);
        UpdateUploads(uploads_, *model_);
    }

    Pixels Draw(const ShaderProgram& surfaceShader, bool wholeMeshes) {
        const Camera camera(10.0, 10.0, HighestSurface(model_->stack.coverMap), 40.0);
        const int height = static_cast<int>(800 / camera.aspect);
        const Canvas canvas(800, height);
        PictureTools tools{surfaceShader, pointShader_, font_};
        if (wholeMeshes) {
            tools.hidingRules.reset();
        }
        RenderFrame(*model_, uploads_, camera, tools, 800, height);
        return canvas.Read();
    }

    ShaderProgram Load(const std::string& text) {
        return ShaderProgram(folder_.Write("own.shader", text));
    }

    TempFolder folder_;
    std::unique_ptr<ProcessModel> model_ = MakeEmptyModel(10.0f, 10.0f, 120);
    StackUploads uploads_;
    ShaderProgram pointShader_{"point.shader"};
    TextFont font_;
};

TEST_P(OwnShaderTest, DrawsWholeMeshesWithBlending) {
    const ShaderProgram shader = Load(TextOf(GetParam()));
    ASSERT_TRUE(shader.IsUsable()) << Utf8FromWide(shader.Errors()[0]);
    EXPECT_EQ(Draw(shader, false), Draw(shader, true));
}

TEST_P(OwnShaderTest, HasAnotherPictureIfItPromisesWhatItDoesNotKeep) {
    const ShaderProgram shader = Load(promise + TextOf(GetParam()));
    ASSERT_TRUE(shader.IsUsable());
    EXPECT_EQ(Draw(shader, false) == Draw(shader, true), GetParam().keepsThePromise);
}

INSTANTIATE_TEST_SUITE_P(Shaders, OwnShaderTest, testing::ValuesIn(ownShaders),
                         [](const auto& own) { return std::string(own.param.name); });

}  // namespace
}  // namespace zelmo
