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

const ProcessModel& Finished() {
    static const std::unique_ptr<ProcessModel> model = [] {
        auto finished = PrepareExample("cmos_inverter", 1000);
        RunSteps(*finished);
        return finished;
    }();
    return *model;
}

/// From corner to corner of the window, which crosses the most triangles.
CutLine LongestCut() {
    const auto [low, high] = LocationWindow(Finished().settings);
    return {low, high};
}

void TakeSection(benchmark::State& state) {
    const CutLine cut = LongestCut();
    for (auto _ : state) {
        SectionTaker taker(Finished().grid, cut);
        benchmark::DoNotOptimize(taker.Take(Finished(), {1, "step"}));
    }
}
BENCHMARK(TakeSection)->Unit(benchmark::kMillisecond);

void WriteSection(benchmark::State& state) {
    SectionTaker taker(Finished().grid, LongestCut());
    const Section section = taker.Take(Finished(), {1, "step"});
    const SectionView view{HeightsOf(std::span(&section, 1)), 1.0, "cut"};
    for (auto _ : state) {
        benchmark::DoNotOptimize(SectionSvg(section, taker.Points(), view));
        benchmark::DoNotOptimize(SectionCsv(section, taker.Points(), Finished().settings));
    }
}
BENCHMARK(WriteSection)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
