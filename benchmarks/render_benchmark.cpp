#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "model/grid/shown_window.h"
#include "render/gl/gl_context.h"
#include "render/gl/shader_program.h"
#include "render/gl/text_font.h"
#include "render/mesh/layer_mesh.h"
#include "render/stack_uploads.h"
#include "render/step_picture.h"
#include "tests/plain/mesh_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t cells = 1000;

/// What pictures are drawn with, all of it while the context is current.
struct Studio {
    std::string problem;
    std::unique_ptr<GlContext> context = CreateOffscreenGlContext(problem);
    StackUploads uploads;
    TextFont textFont;
    ShaderProgram surfaceShader{"surface.shader"};
    ShaderProgram pointShader{"point.shader"};
    std::unique_ptr<Camera> camera;
};

Studio& TheStudio() {
    static Studio studio;
    return studio;
}

/// The CMOS example after so many steps. Asked for in ascending order, it runs once.
ProcessModel& StackAfter(std::size_t steps) {
    static const auto model = PrepareExample("cmos_inverter", cells);
    static std::size_t executed = 0;
    for (; executed < std::min(steps, model->steps.size()); ++executed) {
        ExecuteStep(*model, model->steps[executed], nullptr);
    }
    return *model;
}

/// After the strip of the first metal's resist: twelve layers.
constexpr std::size_t twelveLayers = 51;
/// At the end: sixteen, three of them translucent.
constexpr std::size_t allSteps = 66;

LayerMesh MeshOf(const ProcessModel& model, const Layer& layer) {
    const ShownWindow window = FindShownWindow(model.grid);
    return MakeLayerMesh(layer, window.marginCols, window.marginRows);
}

double CountTriangles(const ProcessModel& model, const Layer& layer) {
    return static_cast<double>(MeshOf(model, layer).indices.size()) / 3.0;
}

/// Of the layers in the order of the size of their meshes: the largest is 0.
const Layer& LayerBySize(const ProcessModel& model, std::size_t rank) {
    std::vector<std::pair<double, const Layer*>> layers;
    for (const auto& layer : model.stack.layers) {
        if (layer != nullptr) {
            layers.emplace_back(CountTriangles(model, *layer), layer.get());
        }
    }
    std::stable_sort(layers.begin(), layers.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    return *layers[std::min(rank, layers.size() - 1)].second;
}

template <LayerMesh (*Make)(const Layer&, std::int32_t, std::int32_t)>
void MeshOfOneLayer(benchmark::State& state) {
    const ProcessModel& model = StackAfter(twelveLayers);
    const Layer& layer = LayerBySize(model, static_cast<std::size_t>(state.range(0)));
    const ShownWindow window = FindShownWindow(model.grid);
    SetRowThreads(static_cast<std::int32_t>(state.range(1)));
    for (auto _ : state) {
        const LayerMesh mesh = Make(layer, window.marginCols, window.marginRows);
        benchmark::DoNotOptimize(mesh.indices.data());
    }
    SetRowThreads(0);
    state.counters["triangles"] = CountTriangles(model, layer);
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
        const StepImage image =
            TakeStepPicture(model, step, studio.uploads, tools, 1, studio.camera);
        benchmark::DoNotOptimize(image.pixels.data());
    }
    double triangles = 0.0;
    for (const auto& layer : model.stack.layers) {
        triangles += layer != nullptr ? CountTriangles(model, *layer) : 0.0;
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
