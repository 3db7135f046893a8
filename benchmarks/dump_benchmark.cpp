// The stack data of the finished CMOS example at 1000 columns, into a file of the system's folder
// for temporary ones, beside the plain version. Numbers by themselves, which a file's way to the
// disk has no part in.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include "base/file.h"
#include "base/fixed_decimal.h"
#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/process_model.h"
#include "process_run/result_files.h"
#include "tests/plain/stack_data_plain.h"

namespace zelmo {
namespace {

const ProcessModel& Finished() {
    static const std::unique_ptr<ProcessModel> model = [] {
        auto finished = PrepareExample("cmos_inverter", 1000);
        RunSteps(*finished);
        SettleStack(finished->stack, finished->grid);
        return finished;
    }();
    return *model;
}

template <auto Write>
void StackData(benchmark::State& state) {
    const ProcessModel& model = Finished();
    SetRowThreads(static_cast<std::int32_t>(state.range(0)));
    long length = 0;
    for (auto _ : state) {
        const FilePointer file(std::tmpfile());
        if (!file) {
            state.SkipWithError("no temporary file can be made");
            break;
        }
        Write(model, file.get());
        length = std::ftell(file.get());
    }
    SetRowThreads(0);
    state.counters["MB"] = static_cast<double>(length) / 1e6;
}
BENCHMARK(StackData<WriteStackData>)
    ->ArgName("threads")
    ->Arg(1)
    ->Arg(2)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(StackData<WriteStackDataPlain>)
    ->ArgName("threads")
    ->Arg(1)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

char* WithFormat(float value, char* out) {
    return fmt::format_to(out, "{:.12f}", static_cast<double>(value));
}

template <auto Write>
void Number(benchmark::State& state) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> heights(0.0f, 20.0f);
    std::vector<float> values(1000);
    for (float& value : values) {
        value = heights(random);
    }
    std::array<char, longestFixedDecimal> text{};
    for (auto _ : state) {
        for (const float value : values) {
            benchmark::DoNotOptimize(Write(value, text.data()));
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}
BENCHMARK(Number<WriteFixedDecimal<12>>);
BENCHMARK(Number<WithFormat>);

}  // namespace
}  // namespace zelmo
