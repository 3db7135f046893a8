#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "model/grid/shown_window.h"
#include "render/gl/gl_context.h"
#include "render/mesh/layer_mesh.h"
#include "render/picture_choice.h"
#include "render/studio.h"
#include "tests/plain/mesh_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t cells = 1000;

/// A picture's triangles are chosen by all rules, by none (whole meshes with blending), or by all
/// but one.
enum Rules : std::int64_t {
    allRules,
    wholeMeshes,
    withoutStanding,
    withoutBuried,
    withoutShadowed,
    withoutBetweenPixels,
};

std::optional<HidingRules> RulesOf(std::int64_t choice) {
    if (choice == wholeMeshes) {
        return std::nullopt;
    }
    return HidingRules{choice != withoutStanding, choice != withoutBuried,
                       choice != withoutShadowed, choice != withoutBetweenPixels};
}

/// Pictures by these rules, all of them in one context.
Studio& StudioOf(std::int64_t rules) {
    static std::string problem;
    static const std::unique_ptr<GlContext> context = CreateOffscreenGlContext(problem);
    static std::map<std::int64_t, Studio> studios;
    if (context == nullptr) {
        throw std::runtime_error(problem);
    }
    return studios.try_emplace(rules, "surface.shader", "point.shader", RulesOf(rules))
        .first->second;
}

/// The CMOS example after so many steps. Asked for in ascending order, it runs once.
const ProcessModel& StackAfter(std::size_t steps) {
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

/// A picture of a stack whose meshes are up to date.
void Picture(benchmark::State& state) {
    const ProcessModel& model = StackAfter(static_cast<std::size_t>(state.range(0)));
    Studio& studio = StudioOf(state.range(1));
    studio.TakePicture(model, {}, 1);  // uploads what has changed
    for (auto _ : state) {
        const StepImage image = studio.TakePicture(model, {}, 1);
        benchmark::DoNotOptimize(image.pixels.data());
    }
    double triangles = 0.0;
    for (const auto& layer : model.stack.layers) {
        triangles += layer != nullptr ? CountTriangles(model, *layer) : 0.0;
    }
    state.counters["triangles"] = triangles;
}

// Arguments: the number of steps, which only grows, and by which rules the triangles are chosen
BENCHMARK(Picture)
    ->Apply([](auto* picture) {
        for (const std::int64_t steps : {twelveLayers, allSteps}) {
            for (std::int64_t rules = allRules; rules <= withoutBetweenPixels; ++rules) {
                picture->Args({steps, rules});
            }
        }
    }) -> MeasureProcessCPUTime() -> UseRealTime() -> Unit(benchmark::kMillisecond);

/// Pictures for slides, by what is chosen of them.
enum Slides : std::int64_t {
    rough,  ///< nothing but a margin around the legend
    smooth,
    thickened,  ///< smooth, films below 40 nm thickened
    sideways,   ///< smooth, from a corner: whole meshes
};

PictureChoice SlideOf(std::int64_t kind, std::int64_t width) {
    PictureChoice choice;
    choice.width = static_cast<std::int32_t>(width);
    choice.title = true;  // in all of them, so that none is the usual picture
    choice.smooth = kind != rough;
    if (kind == thickened) {
        choice.thinnestFilm = 0.04f;
    }
    if (kind == sideways) {
        choice.view = ViewDirection{30.0, 30.0, false};
    }
    return choice;
}

/// The same for a picture for a slide.
void SlidePicture(benchmark::State& state) {
    const ProcessModel& model = StackAfter(allSteps);
    Studio& studio = StudioOf(allRules);
    const PictureChoice choice = SlideOf(state.range(0), state.range(1));
    studio.TakePicture(model, {}, 1, choice);  // uploads what has changed, and makes the fonts
    for (auto _ : state) {
        const StepImage image = studio.TakePicture(model, {}, 1, choice);
        benchmark::DoNotOptimize(image.pixels.data());
    }
}

// Arguments: what is chosen, the width
BENCHMARK(SlidePicture)
    ->Args({rough, 1920})
    ->Args({smooth, 1920})
    ->Args({rough, 3840})
    ->Args({smooth, 3840})
    ->Args({thickened, 1920})
    ->Args({sideways, 1920})
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
