// The neighbour table and what is looked up in it, beside the plain versions.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/grid/neighbour_table.h"
#include "tests/plain/neighbour_table_plain.h"

namespace zelmo {
namespace {

constexpr float spacing = 0.012f;

/// The argument is the number of columns and rows.
template <auto Build>
void NewNeighbourTable(benchmark::State& state) {
    const auto cells = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        NeighbourTable table;
        Build(table, cells, cells, spacing);
        benchmark::DoNotOptimize(table.entries.data());
    }
    state.SetBytesProcessed(state.iterations() * (2 * state.range(0) - 1) *
                            (2 * state.range(0) - 1) *
                            static_cast<std::int64_t>(sizeof(NeighbourOffset)));
}
BENCHMARK(NewNeighbourTable<BuildNeighbourTable>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(NewNeighbourTable<BuildNeighbourTablePlain>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);

/// What the table costs at least: new memory that is written once.
void NewMemoryOfThatSize(benchmark::State& state) {
    const std::int64_t side = 2 * state.range(0) - 1;
    for (auto _ : state) {
        std::vector<NeighbourOffset> entries(static_cast<std::size_t>(side * side));
        benchmark::DoNotOptimize(entries.data());
    }
    state.SetBytesProcessed(state.iterations() * side * side *
                            static_cast<std::int64_t>(sizeof(NeighbourOffset)));
}
BENCHMARK(NewMemoryOfThatSize)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);

/// A grid of 1000 by 1000 cells with its tables.
Grid& LargeGrid() {
    static Grid grid = [] {
        Grid made;
        made.columns = 1000;
        made.rows = 1000;
        made.spacing = spacing;
        BuildNeighbourTable(made.neighbours, 1000, 1000, spacing);
        BuildDistanceIndex(made);
        return made;
    }();
    return grid;
}

void DistanceIndex(benchmark::State& state) {
    for (auto _ : state) {
        BuildDistanceIndex(LargeGrid());
        benchmark::DoNotOptimize(LargeGrid().distanceIndex.data());
    }
}
BENCHMARK(DistanceIndex)->Unit(benchmark::kMicrosecond);

/// The argument is the disc's radius in cells.
template <auto Select>
void Selection(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Select(LargeGrid(), static_cast<float>(state.range(0)) * spacing));
    }
}
BENCHMARK(Selection<SelectDiscOffsets>)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Selection<SelectDiscOffsetsPlain>)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Selection<SelectLeavingOffsets>)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Selection<SelectLeavingOffsetsPlain>)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zelmo
