#include <cmath>

#include "model/grid/grid.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_file/reader.h"
#include "tests/fuzz/target.h"

// Any bytes as a process file.

namespace zelmo {

namespace {

bool IsShare(float value) {
    return value >= 0.0f && value <= 1.0f;
}

void CheckStep(const ProcessStep& step) {
    Require(IsShare(step.alpha), "opacity is a share");
    Require(IsShare(step.dop) && IsShare(step.stepCoverage), "shares are shares");
    Require(step.thickness >= 0.0f && step.depth >= 0.0f && step.res >= 0.0f,
            "lengths are not negative");
    Require(step.maskId <= 65535, "a mask is a layer of a layout");
    for (const float channel : step.color) {
        Require(channel >= 0.0f && std::isfinite(channel), "colours are colours");
    }
}

void Check(ProcessModel& model) {
    Require(model.grid.columns >= 200 && model.grid.columns <= 2000,
            "columns keep to their limits");
    Require(model.settings.windowHeight > 0.0f &&
                model.settings.windowHeight <= model.settings.windowWidth,
            "a window is no higher than wide");
    Require(model.settings.cameraAngle >= 0.0f && model.settings.cameraAngle <= 89.0f,
            "the angle has its limits");
    for (const ProcessStep& step : model.steps) {
        CheckStep(step);
    }
    SizeGrid(model);
}

void Read(const MemoryFile& file) {
    ProcessModel model;
    CountingConsole console;
    const std::int32_t result = ReadProcessFile(model, file.Path(), &console);
    Require(result == (console.errors > 0 ? 1 : 0), "an error is a line, a line is an error");
    Require(console.lines == console.errors, "nothing but errors is told");
    Require(!model.steps.empty() && model.steps[0].kind == StepKind::Substrate,
            "the substrate comes first");
    if (result == 0) {
        Check(model);
    }
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (zelmo::GetColorTable().empty()) {
        zelmo::GetColorTable() = {{"navy", 0, 0, 128}, {"Beige", 245, 245, 220}};
    }
    zelmo::Read(zelmo::MemoryFile(data, size));
    return 0;
}
