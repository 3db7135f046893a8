// Models of the finished CMOS example at 1000 columns: what is made of the stack, and the files.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>

#include "base/file.h"
#include "benchmarks/example_run.h"
#include "results/models/model_files.h"
#include "results/models/stack_model.h"

namespace zelmo {
namespace {

/// With a tolerance in tenths of a nanometre.
void MakeModel(benchmark::State& state) {
    const ModelAccuracy accuracy{static_cast<double>(state.range(0)) / 10.0};
    std::size_t triangles = 0;
    for (auto _ : state) {
        triangles = 0;
        for (const LayerModel& layer : MakeStackModel(FinishedExample(), accuracy).layers) {
            triangles += layer.triangles.size();
        }
    }
    state.counters["triangles"] = static_cast<double>(triangles);
}
BENCHMARK(MakeModel)->Arg(0)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond)->UseRealTime();

/// All that --export does, into a file that is thrown away.
void ExportModel(benchmark::State& state) {
    const ModelFormat& format = modelFormats[state.range(0)];
    state.SetLabel(std::string(format.extension));
    for (auto _ : state) {
        const FilePointer file(std::tmpfile());
        const StackModel model = MakeStackModel(FinishedExample(), {});
        if (!format.write(model, "stack", file.get()).empty()) {
            state.SkipWithError("the model could not be written");
            break;
        }
    }
}
BENCHMARK(ExportModel)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace zelmo
