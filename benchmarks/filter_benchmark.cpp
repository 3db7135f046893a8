// The filters over discs and the cover update at 1000 by 1000 cells, on the surfaces and masks of
// the CMOS example, beside their plain versions.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/cover_map.h"
#include "model/disc/disc_filter.h"
#include "model/mask/mask.h"
#include "model/process_model.h"
#include "tests/plain/cover_map_plain.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/plain/mask_plain.h"

namespace zelmo {
namespace {

/// The finished inverter.
ProcessModel& Example() {
    static const std::unique_ptr<ProcessModel> model = [] {
        auto example = PrepareExample("cmos_inverter", 1000);
        RunSteps(*example);
        return example;
    }();
    return *model;
}

/// A number of cells as a length.
float LengthOf(std::int64_t cells) {
    return static_cast<float>(cells) * Example().grid.spacing;
}

/// The arguments are the disc's radius in cells and the number of threads.
template <auto Smooth>
void CoatingFilter(benchmark::State& state) {
    const ProcessModel& model = Example();
    SetRowThreads(static_cast<std::int32_t>(state.range(1)));
    const auto layer = CreateLayer(model.grid);
    for (auto _ : state) {
        state.PauseTiming();
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            layer->bottom[cell] = model.stack.coverMap[cell].height;
            layer->top[cell] = 0.5f + layer->bottom[cell];
        }
        state.ResumeTiming();
        Smooth(model.grid, *layer, LengthOf(state.range(0)));
        benchmark::DoNotOptimize(layer->top.data());
    }
    SetRowThreads(0);
}
BENCHMARK(CoatingFilter<SmoothLayerTop>)
    ->ArgsProduct({{0, 10, 30, 100, 300}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(CoatingFilter<SmoothLayerTopPlain>)
    ->ArgsProduct({{0, 10, 30, 100}, {1}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// The mask that the example's photo steps use most often.
std::vector<std::uint8_t> RawMask() {
    std::vector<std::uint8_t> rawMask(Example().grid.CellCount());
    constexpr std::array drawn{MaskLayer{2, std::nullopt}};
    RasteriseMask(Example().grid, Example().polygons, rawMask, drawn, true);
    return rawMask;
}

template <auto Blur>
void MaskBlur(benchmark::State& state) {
    const std::vector<std::uint8_t> rawMask = RawMask();
    SetRowThreads(static_cast<std::int32_t>(state.range(1)));
    std::vector<std::uint8_t> mask(rawMask.size());
    for (auto _ : state) {
        Blur(Example().grid, mask, rawMask, LengthOf(state.range(0)));
        benchmark::DoNotOptimize(mask.data());
    }
    SetRowThreads(0);
}
BENCHMARK(MaskBlur<BlurMask>)
    ->ArgsProduct({{5, 10, 20, 50, 200}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MaskBlur<BlurMaskPlain>)
    ->ArgsProduct({{5, 10, 20, 50}, {1}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// Over the stack with the contacts open: thin films, most of them etched into pieces.
template <auto Update>
void CoverUpdate(benchmark::State& state) {
    constexpr std::size_t steps = 39;
    static const std::unique_ptr<ProcessModel> model = PrepareExample("cmos_inverter", 1000);
    if (model->stack.layers.empty()) {
        RunSteps(*model, steps);
    }
    SetRowThreads(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state) {
        Update(model->stack, model->grid);
        benchmark::DoNotOptimize(model->stack.coverMap.data());
    }
    SetRowThreads(0);
}
BENCHMARK(CoverUpdate<UpdateCoverMap>)
    ->Arg(1)
    ->Arg(2)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(CoverUpdate<UpdateCoverMapPlain>)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
