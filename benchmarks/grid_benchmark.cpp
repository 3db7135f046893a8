// Neighbour table, coating filter and cover update at 1000 by 1000 cells, beside their literal
// versions.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

#include "model/cover_map.h"
#include "model/disc_filter.h"
#include "model/neighbour_table.h"
#include "model/process_model.h"
#include "tests/plain/cover_map_plain.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/plain/neighbour_table_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t gridSize = 1000;
constexpr float spacing = 0.012f;

/// Lines and contacts: whether a cell lies on the structure of layer `id`.
bool OnStructure(std::int32_t id, std::int32_t col, std::int32_t row) {
    const std::int32_t pitch = 40 + 17 * id;
    const bool line = (id % 2 == 0 ? col : row) % pitch < pitch / 3;
    const bool contact = col % (2 * pitch) < pitch / 4 && row % (2 * pitch) < pitch / 4;
    return line != contact;
}

/// A substrate and `films` patterned films on it.
std::unique_ptr<ProcessModel> MakeStack(std::int32_t films) {
    auto model = std::make_unique<ProcessModel>();
    model->gridColumns = gridSize;
    model->gridRows = gridSize;
    model->gridSpacing = spacing;
    model->coverMap.resize(model->CellCount());
    BuildNeighbourTable(model->neighbours, gridSize, gridSize, spacing);
    BuildDistanceIndex(*model);
    for (std::int32_t id = 0; id <= films; ++id) {
        auto layer = CreateLayer(gridSize, gridSize, spacing, nullptr);
        std::size_t cell = 0;
        for (std::int32_t row = 0; row < gridSize; ++row) {
            for (std::int32_t col = 0; col < gridSize; ++col, ++cell) {
                layer->bottom[cell] = model->coverMap[cell].height;
                const bool thick = id == 0 || OnStructure(id, col, row);
                layer->top[cell] = layer->bottom[cell] + (thick ? 0.1f : 0.0f);
            }
        }
        AppendLayer(*model, std::move(layer));
        UpdateCoverMap(*model);
    }
    return model;
}

template <auto Build>
void NeighbourTableOf1000(benchmark::State& state) {
    NeighbourTable table;
    for (auto _ : state) {
        Build(table, gridSize, gridSize, spacing);
        benchmark::DoNotOptimize(table.entries.data());
    }
}
BENCHMARK(NeighbourTableOf1000<BuildNeighbourTable>)->Unit(benchmark::kMillisecond);
BENCHMARK(NeighbourTableOf1000<BuildNeighbourTablePlain>)->Unit(benchmark::kMillisecond);

void DistanceIndexOf1000(benchmark::State& state) {
    const auto model = MakeStack(0);
    for (auto _ : state) {
        BuildDistanceIndex(*model);
        benchmark::DoNotOptimize(model->distanceIndex.data());
    }
}
BENCHMARK(DistanceIndexOf1000)->Unit(benchmark::kMillisecond);

/// The argument is the disc's radius in cells.
template <auto Smooth>
void CoatingFilter(benchmark::State& state) {
    const auto model = MakeStack(3);
    const auto layer = CreateLayer(gridSize, gridSize, spacing, nullptr);
    for (auto _ : state) {
        state.PauseTiming();
        for (std::size_t cell = 0; cell < model->CellCount(); ++cell) {
            layer->bottom[cell] = model->coverMap[cell].height;
            layer->top[cell] = 0.5f + layer->bottom[cell];
        }
        state.ResumeTiming();
        Smooth(*model, *layer, static_cast<float>(state.range(0)) * spacing);
        benchmark::DoNotOptimize(layer->top.data());
    }
}
BENCHMARK(CoatingFilter<SmoothLayerTop>)
    ->Arg(10)
    ->Arg(100)
    ->Arg(300)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(CoatingFilter<SmoothLayerTopPlain>)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

/// The argument is the number of patterned films.
template <auto Update>
void CoverUpdate(benchmark::State& state) {
    const auto model = MakeStack(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state) {
        Update(*model);
        benchmark::DoNotOptimize(model->coverMap.data());
    }
}
BENCHMARK(CoverUpdate<UpdateCoverMap>)->Arg(1)->Arg(12)->Unit(benchmark::kMillisecond);
BENCHMARK(CoverUpdate<UpdateCoverMapPlain>)->Arg(1)->Arg(12)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
