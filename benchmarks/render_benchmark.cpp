#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "render/layer_mesh.h"
#include "tests/plain/mesh_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t cells = 1000;
constexpr std::int32_t margin = 83;

/// A film of the share `covered` (in eighths) of a surface of square islands and sloping ground.
std::unique_ptr<Layer> MakeStructuredLayer(std::int32_t covered) {
    auto layer = CreateLayer(cells, cells, 0.1f, nullptr);
    for (std::int32_t row = 0; row < cells; ++row) {
        for (std::int32_t col = 0; col < cells; ++col) {
            const auto i = static_cast<std::size_t>(row * cells + col);
            const bool isIsland = (row / 40) % 2 == 0 && (col / 25) % 3 == 0;
            layer->bottom[i] = 0.001f * static_cast<float>(col % 300) + (isIsland ? 0.8f : 0.0f);
            layer->top[i] = layer->bottom[i];
            if ((row / 20 + col / 20) % 8 < covered) {
                layer->top[i] += 0.5f;
            }
        }
    }
    return layer;
}

template <LayerMesh (*Make)(const Layer&, std::int32_t, std::int32_t)>
void MeshOfOneLayer(benchmark::State& state) {
    const auto layer = MakeStructuredLayer(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state) {
        const LayerMesh mesh = Make(*layer, margin, margin);
        benchmark::DoNotOptimize(mesh.indices.data());
    }
}

BENCHMARK(MeshOfOneLayer<MakeLayerMeshPlain>)
    ->Name("LayerMesh/plain")
    ->Arg(8)
    ->Arg(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MeshOfOneLayer<MakeLayerMesh>)
    ->Name("LayerMesh/current")
    ->Arg(8)
    ->Arg(3)
    ->Unit(benchmark::kMillisecond);

/// Without a GL context only the number of indices is needed.
void IndexCountOfOneLayer(benchmark::State& state) {
    const auto layer = MakeStructuredLayer(8);
    for (auto _ : state) {
        BuildLayerMesh(*layer, margin, margin);
        benchmark::DoNotOptimize(layer->indexCount);
    }
}

BENCHMARK(IndexCountOfOneLayer)->Name("LayerMesh/count")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
