// A cut through the finished CMOS example at 1000 columns, with all of its layers: what is read of
// the stack, and its two files.

#include <benchmark/benchmark.h>

#include <memory>
#include <span>
#include <string>

#include "benchmarks/example_run.h"
#include "model/grid/places.h"
#include "results/section.h"
#include "results/section_svg.h"

namespace zelmo {
namespace {

/// From corner to corner of the window, which crosses the most triangles.
CutLine LongestCut() {
    const auto [low, high] = LocationWindow(FinishedExample().settings);
    return {low, high};
}

void TakeSection(benchmark::State& state) {
    const CutLine cut = LongestCut();
    for (auto _ : state) {
        SectionTaker taker(FinishedExample().grid, cut);
        benchmark::DoNotOptimize(taker.Take(FinishedExample(), {1, "step"}));
    }
}
BENCHMARK(TakeSection)->Unit(benchmark::kMillisecond);

void WriteSection(benchmark::State& state) {
    SectionTaker taker(FinishedExample().grid, LongestCut());
    const Section section = taker.Take(FinishedExample(), {1, "step"});
    const SectionView view{HeightsOf(std::span(&section, 1)), 1.0, "cut"};
    for (auto _ : state) {
        benchmark::DoNotOptimize(SectionSvg(section, taker.Points(), view));
        benchmark::DoNotOptimize(SectionCsv(section, taker.Points(), FinishedExample().settings));
    }
}
BENCHMARK(WriteSection)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
