// The heights of a page of the CMOS example, 66 steps at 1000 columns: what a page with so many
// columns takes of them, in processor time and in megabytes. Then the same bytes as HTML.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "base/file.h"
#include "benchmarks/example_run.h"
#include "model/execute_step.h"
#include "model/process_model.h"
#include "report/field_store.h"
#include "report/page.h"
#include "report/page_bundle.h"
#include "report/page_file.h"

namespace zelmo {
namespace {

struct Run {
    std::unique_ptr<ProcessModel> model;
    std::vector<Stack> stacks;  ///< after each step
};

const Run& FinishedRun() {
    static const Run run = [] {
        Run made{PrepareExample("cmos_inverter", 1000), {}};
        for (const ProcessStep& step : made.model->steps) {
            ExecuteStep(*made.model, step, nullptr);
            made.stacks.push_back(CopyStack(made.model->stack));
        }
        return made;
    }();
    return run;
}

FieldStore TakeAll(std::int32_t columns) {
    const Run& run = FinishedRun();
    FieldStore store(ThinGrid(run.model->grid, columns));
    for (const Stack& stack : run.stacks) {
        store.Take(stack, run.model->grid.columns);
    }
    return store;
}

void TakeHeights(benchmark::State& state) {
    std::size_t bytes = 0;
    std::size_t fields = 0;
    FinishedRun();
    for (auto _ : state) {
        const FieldStore store = TakeAll(static_cast<std::int32_t>(state.range(0)));
        bytes = fields = 0;
        for (const PageChunk& chunk : store.Chunks()) {
            bytes += chunk.stream.size();
            fields += chunk.bases.size();
        }
    }
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["fields"] = static_cast<double>(fields);
}
BENCHMARK(TakeHeights)
    ->ArgName("columns")
    ->Arg(200)
    ->Arg(400)
    ->Arg(1000)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

void WriteHeights(benchmark::State& state) {
    Page page;
    page.chunks = TakeAll(static_cast<std::int32_t>(state.range(0))).Chunks();
    long length = 0;
    for (auto _ : state) {
        const FilePointer file(std::tmpfile());
        if (!file || !WritePage(page, {"1", "a{}"}, file.get()).empty()) {
            state.SkipWithError("no temporary file can be written");
            break;
        }
        length = std::ftell(file.get());
    }
    state.counters["MB"] = static_cast<double>(length) / 1e6;
}
BENCHMARK(WriteHeights)
    ->ArgName("columns")
    ->Arg(200)
    ->Arg(1000)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
