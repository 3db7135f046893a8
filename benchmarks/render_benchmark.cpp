#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "model/row_bands.h"
#include "render/layer_mesh.h"
#include "tests/plain/mesh_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t cells = 1000;

/// The CMOS example after the strip of its first metal's resist, twelve layers.
const ProcessModel& Stack() {
    static const std::unique_ptr<ProcessModel> model = [] {
        constexpr std::size_t steps = 51;
        auto stack = PrepareExample("cmos_inverter", cells);
        for (std::size_t i = 0; i < std::min(steps, stack->steps.size()); ++i) {
            ExecuteStep(*stack, stack->steps[i], nullptr);
            UpdateMeshes(*stack);
        }
        return stack;
    }();
    return *model;
}

/// Of the layers in the order of the size of their meshes: the largest is 0.
const Layer& LayerBySize(std::size_t place) {
    std::vector<const Layer*> layers;
    for (const auto& layer : Stack().layers) {
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
    const Layer& layer = LayerBySize(static_cast<std::size_t>(state.range(0)));
    const ProcessModel& model = Stack();
    const auto marginCols = static_cast<std::int32_t>(model.marginX / model.gridSpacing);
    const auto marginRows = static_cast<std::int32_t>(model.marginY / model.gridSpacing);
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

}  // namespace
}  // namespace zelmo
