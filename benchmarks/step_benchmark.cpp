// Polish and implant on the finished CMOS example at 1000 columns, with all of its layers, beside
// their plain versions. What a step rewrites is put back outside of the time.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/row_bands.h"
#include "benchmarks/example_run.h"
#include "model/process_model.h"
#include "model/steps/steps.h"
#include "tests/plain/implant_plain.h"
#include "tests/plain/polish_plain.h"

namespace zelmo {
namespace {

/// The finished inverter, and its layers to go back to.
class Example {
public:
    Example() : model(PrepareExample("cmos_inverter", 1000)) {
        RunSteps(*model);
        for (const auto& layer : model->stack.layers) {
            layers_.push_back(layer == nullptr ? nullptr : std::make_unique<Layer>(*layer));
        }
    }

    void Restore() {
        auto& layers = model->stack.layers;
        layers.resize(layers_.size());
        for (std::size_t id = 0; id < layers.size(); ++id) {
            if (layers_[id] != nullptr && (layers[id] == nullptr || layers[id]->changed)) {
                layers[id] = std::make_unique<Layer>(*layers_[id]);
            }
        }
    }

    std::unique_ptr<ProcessModel> model;

private:
    std::vector<std::unique_ptr<Layer>> layers_;
};

Example& Finished() {
    static Example example;
    return example;
}

/// Runs a step again and again on the given number of threads.
template <typename Step>
void Repeat(benchmark::State& state, const Step& step, std::int64_t threads) {
    Example& example = Finished();
    SetRowThreads(static_cast<std::int32_t>(threads));
    for (auto _ : state) {
        state.PauseTiming();
        example.Restore();
        state.ResumeTiming();
        step(*example.model);
        benchmark::DoNotOptimize(example.model->stack.coverMap.data());
    }
    SetRowThreads(0);
    example.Restore();
    state.counters["layers"] = example.model->stack.layerCount;
    state.counters["cells"] = static_cast<double>(example.model->grid.CellCount());
}

/// The stop: the upper metal, so that the passivation is levelled; or the gates, so that nearly all
/// of the stack is.
template <auto Execute>
void Polish(benchmark::State& state) {
    ProcessStep step;
    step.kind = StepKind::Polish;
    step.polishesToStop = true;
    step.targets = {state.range(0) == 0 ? "Metal2" : "Poly"};
    Repeat(
        state, [&](ProcessModel& model) { Execute(model.stack, model.grid, step); },
        state.range(1));
}
BENCHMARK(Polish<ExecutePolish>)
    ->ArgNames({"gates", "threads"})
    ->ArgsProduct({{0, 1}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Polish<ExecutePolishPlain>)
    ->ArgNames({"gates", "threads"})
    ->ArgsProduct({{0, 1}, {1}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// Everything but the silicon shields it; or everything is converted down to the substrate.
template <auto Execute>
void Implant(benchmark::State& state) {
    ProcessStep step;
    step.kind = StepKind::Implant;
    step.material = "doped";
    step.depth = state.range(0) == 0 ? 0.1f : 1e6f;
    for (const auto& layer : Finished().model->stack.layers) {
        if (layer != nullptr && (state.range(0) == 1 || layer->material == "PEpi")) {
            step.targets.push_back(layer->material);
        }
    }
    Repeat(
        state, [&](ProcessModel& model) { Execute(model.stack, model.grid, step); },
        state.range(1));
}
BENCHMARK(Implant<ExecuteImplant>)
    ->ArgNames({"deep", "threads"})
    ->ArgsProduct({{0, 1}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Implant<ExecuteImplantPlain>)
    ->ArgNames({"deep", "threads"})
    ->ArgsProduct({{0, 1}, {1}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zelmo
