// The surface offset at 1000 by 1000 cells on surfaces of the CMOS example, beside its plain
// version.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "model/offset/surface_offset.h"
#include "model/process_model.h"
#include "tests/plain/surface_offset_plain.h"

namespace zelmo {
namespace {

/// What a deposition or etch step moves, and how.
struct OffsetCase {
    std::vector<float> surface;
    float distance = 0.0f;
    float lateral = 0.0f;
};

ProcessModel& Example() {
    static const std::unique_ptr<ProcessModel> model = PrepareExample("cmos_inverter", 1000);
    return *model;
}

/// The example's depositions and etches, by the number of the step.
const std::map<std::int64_t, OffsetCase>& Cases() {
    static const std::map<std::int64_t, OffsetCase> cases = [] {
        std::map<std::int64_t, OffsetCase> made;
        ProcessModel& model = Example();
        for (std::size_t i = 0; i < model.steps.size(); ++i) {
            const ProcessStep& step = model.steps[i];
            const bool isEtch = step.kind == StepKind::Etch;
            if (isEtch || step.kind == StepKind::Deposition) {
                OffsetCase& offset = made[static_cast<std::int64_t>(i)];
                for (const CoverCell& cell : model.stack.coverMap) {
                    offset.surface.push_back(cell.height);
                }
                offset.distance = isEtch ? -step.depth : step.thickness;
                offset.lateral = isEtch ? step.iso : step.stepCoverage;
            }
            ExecuteStep(model, step, nullptr);
        }
        return made;
    }();
    return cases;
}

enum Machine : std::int64_t { NarrowLanes, WideLanes, TwoThreads };

void Choose(std::int64_t machine) {
    AllowWideLanes(machine != NarrowLanes);
    SetRowThreads(machine == TwoThreads ? 2 : 1);
}

/// The arguments are the number of the step and the machine.
template <auto Offset>
void SurfaceOffset(benchmark::State& state) {
    const OffsetCase& offset = Cases().at(state.range(0));
    Choose(state.range(1));
    std::vector<float> out(offset.surface.size());
    for (auto _ : state) {
        Offset(Example().grid, out, offset.surface, offset.distance, offset.lateral);
        benchmark::DoNotOptimize(out.data());
    }
    Choose(WideLanes);
    SetRowThreads(0);
}

// Films on level ground, a well's etch, films over gates, over steep contacts and over everything,
// the etches of the contacts and of the last metal.
BENCHMARK(SurfaceOffset<OffsetSurfacePlain>)
    ->ArgsProduct({{1, 6, 17, 43, 45, 62, 64}, {NarrowLanes}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SurfaceOffset<OffsetSurface>)
    ->ArgsProduct({{1, 6, 17, 43, 45, 62, 64}, {NarrowLanes, WideLanes, TwoThreads}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// All depositions and etches of the run; the argument is the machine.
template <auto Offset>
void AllOffsets(benchmark::State& state) {
    Choose(state.range(0));
    std::vector<float> out(Example().grid.CellCount());
    for (auto _ : state) {
        for (const auto& [step, offset] : Cases()) {
            Offset(Example().grid, out, offset.surface, offset.distance, offset.lateral);
            benchmark::DoNotOptimize(out.data());
        }
    }
    Choose(WideLanes);
    SetRowThreads(0);
}
BENCHMARK(AllOffsets<OffsetSurfacePlain>)
    ->Arg(NarrowLanes)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(AllOffsets<OffsetSurface>)
    ->Arg(NarrowLanes)
    ->Arg(WideLanes)
    ->Arg(TwoThreads)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// How fast the memory is that a surface is read from and written to.
void CopyOfASurface(benchmark::State& state) {
    const OffsetCase& offset = Cases().begin()->second;
    std::vector<float> out(offset.surface.size());
    for (auto _ : state) {
        std::copy(offset.surface.begin(), offset.surface.end(), out.begin());
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(2 * sizeof(float) * out.size()));
}
BENCHMARK(CopyOfASurface)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
