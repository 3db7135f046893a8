// Mask raster and edge distance on grids of 1000 by 1000 cells, each beside its plain version: on
// the masks of the CMOS example, and on masks that are hard to do.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/grid/neighbour_table.h"
#include "model/mask/mask.h"
#include "model/process_model.h"
#include "tests/plain/mask_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t gridSize = 1000;
constexpr float pitch = 0.012f;
constexpr std::array drawn{MaskLayer{1, std::nullopt}};

/// A grid with its tables, which take a while to build: once for all benchmarks.
const Grid& SquareGrid(std::int32_t size) {
    static std::map<std::int32_t, Grid> grids;
    const auto [slot, isNew] = grids.try_emplace(size);
    Grid& grid = slot->second;
    if (isNew) {
        grid.columns = size;
        grid.rows = size;
        grid.spacing = pitch;
        BuildNeighbourTable(grid.neighbours, size, size, pitch);
        BuildDistanceIndex(grid);
    }
    return grid;
}

// Raster

double RandomUpTo(std::mt19937& random, double limit) {
    return static_cast<double>(random() % 1000000U) / 1000000.0 * limit;
}

/// A star of `points` points around (x, y).
MaskPolygon Star(std::mt19937& random, double x, double y, double size, std::int32_t points) {
    MaskPolygon polygon;
    polygon.layer = drawn[0].layer;
    polygon.minX = polygon.minY = 1.0e30;
    polygon.maxX = polygon.maxY = 0.0;
    for (std::int32_t i = 0; i < points; ++i) {
        const double angle = i * 6.283185307179586 / points;
        const double radius = size * (0.5 + RandomUpTo(random, 0.5));
        const MaskPoint point{x + radius * std::cos(angle), y + radius * std::sin(angle)};
        polygon.points.push_back(point);
        polygon.minX = std::min(polygon.minX, point.x);
        polygon.minY = std::min(polygon.minY, point.y);
        polygon.maxX = std::max(polygon.maxX, point.x);
        polygon.maxY = std::max(polygon.maxY, point.y);
    }
    return polygon;
}

std::vector<MaskPolygon> Stars(std::size_t count, double size, std::int32_t points) {
    std::mt19937 random(7);
    const double extent = static_cast<double>(gridSize) * static_cast<double>(pitch);
    std::vector<MaskPolygon> polygons;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = RandomUpTo(random, extent);
        const double y = RandomUpTo(random, extent);
        polygons.push_back(Star(random, x, y, size, points));
    }
    return polygons;
}

template <auto Rasterise>
void Raster(benchmark::State& state) {
    const Grid& grid = SquareGrid(gridSize);
    const double size = static_cast<double>(state.range(1)) * static_cast<double>(pitch);
    const std::vector<MaskPolygon> polygons = Stars(static_cast<std::size_t>(state.range(0)), size,
                                                    static_cast<std::int32_t>(state.range(2)));
    std::vector<std::uint8_t> mask(grid.CellCount());
    for (auto _ : state) {
        benchmark::DoNotOptimize(Rasterise(grid, polygons, mask, drawn, true));
    }
}

void RasterCases(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"polygons", "size", "points"});
    benchmark->Args({10000, 10, 50});
    benchmark->Args({10000, 40, 50});
    benchmark->Args({10000, 10, 4});
    benchmark->Args({200, 50, 4});
    benchmark->Unit(benchmark::kMillisecond);
}
BENCHMARK(Raster<RasteriseMask>)->Apply(RasterCases)->Args({100, 500, 8000});
BENCHMARK(Raster<RasteriseMaskPlain>)->Apply(RasterCases);

// Edge distance

using DistanceFunction = void (*)(const Grid&, std::span<float>, std::span<const std::uint8_t>);

struct ExampleMasks {
    std::unique_ptr<ProcessModel> model = PrepareExample("cmos_inverter", gridSize);
    std::vector<std::vector<std::uint8_t>> masks;

    ExampleMasks() {
        std::vector<std::uint8_t> rawMask(model->grid.CellCount());
        for (const ProcessStep& step : model->steps) {
            if (step.kind == StepKind::Photo) {
                RasteriseMask(model->grid, model->polygons, rawMask, step.mask, step.maskDark);
                masks.emplace_back(model->grid.CellCount());
                BlurMask(model->grid, masks.back(), rawMask, step.res * 0.5f);
            }
        }
    }
};

/// All masks of the example.
template <DistanceFunction Measure>
void EdgeDistanceOfExample(benchmark::State& state) {
    static const ExampleMasks example;
    SetRowThreads(static_cast<std::int32_t>(state.range(0)));
    std::vector<float> distance(example.model->grid.CellCount());
    for (auto _ : state) {
        for (const std::vector<std::uint8_t>& mask : example.masks) {
            Measure(example.model->grid, distance, mask);
        }
    }
    SetRowThreads(0);
    state.counters["masks"] = static_cast<double>(example.masks.size());
}
BENCHMARK(EdgeDistanceOfExample<MaskEdgeDistance>)
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(EdgeDistanceOfExample<MaskEdgeDistancePlain>)->Arg(1)->Unit(benchmark::kMillisecond);

std::vector<std::uint8_t> CoveredMask(std::int32_t size) {
    return std::vector<std::uint8_t>(
        static_cast<std::size_t>(size) * static_cast<std::size_t>(size), 1);
}

/// Resist everywhere but in one cell.
std::vector<std::uint8_t> OneOpening(std::int32_t size) {
    std::vector<std::uint8_t> mask = CoveredMask(size);
    mask[mask.size() / 3] = 0;
    return mask;
}

/// A ring of openings: the hardest shape for searches along rows.
std::vector<std::uint8_t> RingOfOpenings(std::int32_t size) {
    std::vector<std::uint8_t> mask = CoveredMask(size);
    for (std::int32_t i = 0; i < 20000; ++i) {
        const double angle = i * 6.283185307179586 / 20000;
        const auto col = static_cast<std::size_t>(size * (0.5 + 0.45 * std::cos(angle)));
        const auto row = static_cast<std::size_t>(size * (0.5 + 0.45 * std::sin(angle)));
        mask[row * static_cast<std::size_t>(size) + col] = 0;
    }
    return mask;
}

std::vector<std::uint8_t> ScatteredOpenings(std::int32_t size) {
    std::mt19937 random(3);
    std::vector<std::uint8_t> mask = CoveredMask(size);
    for (std::uint8_t& cell : mask) {
        cell = random() % 20000 != 0;
    }
    return mask;
}

template <DistanceFunction Measure, auto makeMask>
void EdgeDistance(benchmark::State& state) {
    const auto size = static_cast<std::int32_t>(state.range(0));
    const Grid& grid = SquareGrid(size);
    const std::vector<std::uint8_t> mask = makeMask(size);
    SetRowThreads(1);
    std::vector<float> distance(mask.size());
    for (auto _ : state) {
        Measure(grid, distance, mask);
    }
    SetRowThreads(0);
}
BENCHMARK(EdgeDistance<MaskEdgeDistance, CoveredMask>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(EdgeDistance<MaskEdgeDistance, OneOpening>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(EdgeDistance<MaskEdgeDistance, RingOfOpenings>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(EdgeDistance<MaskEdgeDistance, ScatteredOpenings>)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(EdgeDistance<MaskEdgeDistancePlain, ScatteredOpenings>)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
