// The surface offset and the mask blur on a grid of 1000 by 1000 cells, each beside its plain
// version.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "model/mask.h"
#include "model/neighbour_table.h"
#include "model/surface_offset.h"
#include "tests/plain/mask_plain.h"
#include "tests/plain/surface_offset_plain.h"

namespace zelmo {
namespace {

constexpr std::int32_t gridSize = 1000;
constexpr float pitch = 0.012f;
constexpr std::uint32_t maskId = 1;

double RandomUpTo(std::mt19937& random, double limit) {
    return static_cast<double>(random() % 1000000U) / 1000000.0 * limit;
}

void SetBox(MaskPolygon& polygon) {
    const auto [left, right] =
        std::minmax_element(polygon.points.begin(), polygon.points.end(),
                            [](const MaskPoint& a, const MaskPoint& b) { return a.x < b.x; });
    const auto [lower, upper] =
        std::minmax_element(polygon.points.begin(), polygon.points.end(),
                            [](const MaskPoint& a, const MaskPoint& b) { return a.y < b.y; });
    polygon.minX = left->x;
    polygon.maxX = right->x;
    polygon.minY = lower->y;
    polygon.maxY = upper->y;
}

/// Two hundred shapes of a layout: lines and pads, every tenth a round one.
std::vector<MaskPolygon> MakeLayout() {
    std::mt19937 random(7);
    const double extent = static_cast<double>(gridSize) * static_cast<double>(pitch);
    std::vector<MaskPolygon> polygons(200);
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        MaskPolygon& polygon = polygons[i];
        polygon.layer = maskId;
        const double x = RandomUpTo(random, extent);
        const double y = RandomUpTo(random, extent);
        if (i % 10 == 0) {
            for (int corner = 0; corner < 64; ++corner) {
                const double angle = corner * (6.283185307179586 / 64.0);
                polygon.points.push_back({x + 0.6 * std::cos(angle), y + 0.6 * std::sin(angle)});
            }
        } else {
            const double width = 0.1 + RandomUpTo(random, i % 2 == 0 ? 0.2 : 2.0);
            const double height = 0.1 + RandomUpTo(random, i % 2 == 0 ? 2.0 : 0.2);
            polygon.points = {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
        }
        SetBox(polygon);
    }
    return polygons;
}

/// The model with its tables, which take a while to build: once for all benchmarks.
const ProcessModel& Model() {
    static const std::unique_ptr<ProcessModel> model = [] {
        auto result = std::make_unique<ProcessModel>();
        result->gridColumns = gridSize;
        result->gridRows = gridSize;
        result->gridSpacing = pitch;
        BuildNeighbourTable(result->neighbours, gridSize, gridSize, pitch);
        BuildDistanceIndex(*result);
        result->polygons = MakeLayout();
        return result;
    }();
    return *model;
}

std::vector<std::uint8_t> PatternedMask() {
    std::vector<std::uint8_t> mask(Model().CellCount());
    RasteriseMask(Model(), mask, maskId, true);
    return mask;
}

/// Etched lines of 0.4 micrometres with upright walls on ground that waves a little.
std::vector<float> PatternedSurface() {
    const std::vector<std::uint8_t> mask = PatternedMask();
    std::vector<float> surface(mask.size());
    for (std::size_t cell = 0; cell < mask.size(); ++cell) {
        const auto col = static_cast<float>(cell % gridSize);
        const auto row = static_cast<float>(cell / gridSize);
        const float wave = 0.05f * std::sin(col * 0.02f) * std::cos(row * 0.013f);
        surface[cell] = 1.0f + wave + (mask[cell] != 0 ? 0.4f : 0.0f);
    }
    return surface;
}

using OffsetFunction = void (*)(const ProcessModel&, std::span<float>, std::span<const float>,
                                float, float);

void RunOffset(benchmark::State& state, OffsetFunction offsetSurface, float distance,
               float lateral) {
    const std::vector<float> surface = PatternedSurface();
    std::vector<float> out(surface.size());
    for (auto _ : state) {
        offsetSurface(Model(), out, surface, distance, lateral);
        benchmark::DoNotOptimize(out.data());
    }
}

BENCHMARK_CAPTURE(RunOffset, deposition, OffsetSurface, 0.15f, 0.5f)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunOffset, deposition_plain, OffsetSurfacePlain, 0.15f, 0.5f)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunOffset, conformal_deposition, OffsetSurface, 0.15f, 1.0f)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunOffset, etch, OffsetSurface, -0.3f, 0.1f)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunOffset, etch_plain, OffsetSurfacePlain, -0.3f, 0.1f)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunOffset, isotropic_etch, OffsetSurface, -0.3f, 1.0f)
    ->Unit(benchmark::kMillisecond);

using BlurFunction = void (*)(const ProcessModel&, std::span<std::uint8_t>,
                              std::span<const std::uint8_t>, float);

void RunBlur(benchmark::State& state, BlurFunction blurMask, float radius) {
    const std::vector<std::uint8_t> rawMask = PatternedMask();
    std::vector<std::uint8_t> mask(rawMask.size());
    for (auto _ : state) {
        blurMask(Model(), mask, rawMask, radius);
        benchmark::DoNotOptimize(mask.data());
    }
}

BENCHMARK_CAPTURE(RunBlur, radius_10_cells, BlurMask, 0.12f)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunBlur, radius_10_cells_plain, BlurMaskPlain, 0.12f)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RunBlur, radius_50_cells, BlurMask, 0.6f)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
