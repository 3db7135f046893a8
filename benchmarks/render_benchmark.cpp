#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/log_console.h"
#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "render/gl/gl_context.h"
#include "render/gl/layer_graphics_gl.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/mesh/layer_mesh.h"
#include "render/mesh/update_meshes.h"
#include "render/step_picture.h"
#include "tests/plain/mesh_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t cells = 1000;

class QuietConsole : public LogConsole {
protected:
    void AppendLine(std::wstring) override {}
};

/// What pictures are drawn with, all of it while the context is current.
struct Studio {
    std::string problem;
    std::unique_ptr<GlContext> context = CreateOffscreenGlContext(problem);
    QuietConsole console;
    LayerGraphicsGl graphics;
    TextFont textFont;
    ShaderProgram surfaceShader{"surface.shader", &console};
    ShaderProgram pointShader{"point.shader", &console};
    std::unique_ptr<Camera> camera;
};

Studio& TheStudio() {
    static Studio studio;
    return studio;
}

/// The CMOS example after so many steps. Asked for in ascending order, it runs once.
ProcessModel& StackAfter(std::size_t steps) {
    static const auto model = PrepareExample("cmos_inverter", cells, &TheStudio().graphics);
    static std::size_t executed = 0;
    for (; executed < std::min(steps, model->steps.size()); ++executed) {
        ExecuteStep(*model, model->steps[executed], nullptr);
        UpdateMeshes(*model);
    }
    return *model;
}

/// After the strip of the first metal's resist: twelve layers.
constexpr std::size_t twelveLayers = 51;
/// At the end: sixteen, three of them translucent.
constexpr std::size_t allSteps = 66;

/// Of the layers in the order of the size of their meshes: the largest is 0.
const Layer& LayerBySize(const ProcessModel& model, std::size_t place) {
    std::vector<const Layer*> layers;
    for (const auto& layer : model.stack.layers) {
        if (layer != nullptr) {
            layers.push_back(layer.get());
        }
    }
    std::sort(layers.begin(), layers.end(),
              [](const Layer* a, const Layer* b) { return a->indexCount > b->indexCount; });
    return *layers[std::min(place, layers.size() - 1)];
}

template <LayerMesh (*Make)(const Layer&, std::int32_t, std::int32_t)>
void MeshOfOneLayer(benchmark::State& state) {
    const ProcessModel& model = StackAfter(twelveLayers);
    const Layer& layer = LayerBySize(model, static_cast<std::size_t>(state.range(0)));
    const auto marginCols = static_cast<std::int32_t>(model.grid.marginX / model.grid.spacing);
    const auto marginRows = static_cast<std::int32_t>(model.grid.marginY / model.grid.spacing);
    SetRowThreads(static_cast<std::int32_t>(state.range(1)));
    for (auto _ : state) {
        const LayerMesh mesh = Make(layer, marginCols, marginRows);
        benchmark::DoNotOptimize(mesh.indices.data());
    }
    SetRowThreads(0);
    state.counters["triangles"] = static_cast<double>(layer.indexCount) / 3.0;
}

// Arguments: the layer, the number of threads
BENCHMARK(MeshOfOneLayer<MakeLayerMeshPlain>)
    ->Name("LayerMesh/plain")
    ->Args({0, 1})
    ->Args({2, 1})
    ->Args({5, 1})
    ->Args({11, 1})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MeshOfOneLayer<MakeLayerMesh>)
    ->Name("LayerMesh/current")
    ->ArgsProduct({{0, 2, 5, 11}, {1, 2}})
    ->Unit(benchmark::kMillisecond);

/// A picture of a stack whose meshes are up to date, with all triangles or with those in sight.
void Picture(benchmark::State& state) {
    ProcessModel& model = StackAfter(static_cast<std::size_t>(state.range(0)));
    Studio& studio = TheStudio();
    const PictureTools tools{studio.surfaceShader, studio.pointShader, studio.textFont,
                             state.range(1) != 0};
    const ProcessStep step;
    for (auto _ : state) {
        const StepImage image = TakeStepPicture(model, step, tools, 1, studio.camera);
        benchmark::DoNotOptimize(image.pixels.data());
    }
    double triangles = 0.0;
    for (const auto& layer : model.stack.layers) {
        triangles += layer != nullptr ? static_cast<double>(layer->indexCount) / 3.0 : 0.0;
    }
    state.counters["triangles"] = triangles;
}

// Arguments: the number of steps, which only grows, and whether all triangles are drawn
BENCHMARK(Picture)
    ->Args({twelveLayers, 1})
    ->Args({twelveLayers, 0})
    ->Args({allSteps, 1})
    ->Args({allSteps, 0})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
