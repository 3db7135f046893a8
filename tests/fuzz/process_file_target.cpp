#include <cmath>

#include "model/grid/grid.h"
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
    Require(IsShare(step.dop) && IsShare(step.stepCoverage) && IsShare(step.resistRate),
            "shares are shares");
    Require(!std::isnan(ReachOf(step.adjustment)), "the reach of a mask is a number");
    Require(step.thickness >= 0.0f && step.depth >= 0.0f && step.res >= 0.0f,
            "lengths are not negative");
    Require(step.mask.empty() == (step.kind != StepKind::Photo), "a photo step has a mask");
    for (const MaskLayer& layer : step.mask) {
        Require(layer.layer <= 65535 && layer.datatype.value_or(0) <= 65535,
                "a mask is of layers of a layout");
    }
    for (const float channel : step.color) {
        Require(channel >= 0.0f && std::isfinite(channel), "colours are colours");
    }
}

void Check(const ProcessFile& file) {
    const ProcessSettings& settings = file.settings;
    Require(settings.gridColumns >= 200 && settings.gridColumns <= 2000,
            "columns keep to their limits");
    Require(settings.windowHeight > 0.0f && settings.windowHeight <= settings.windowWidth,
            "a window is no higher than wide");
    Require(settings.cameraAngle >= 0.0f && settings.cameraAngle <= 89.0f,
            "the angle has its limits");
    for (const ProcessStep& step : file.steps) {
        CheckStep(step);
    }
    Grid grid;
    SizeGrid(grid, settings);
}

void Read(const MemoryFile& bytes) {
    static const ColorTable colors = {{"navy", 0, 0, 128}, {"Beige", 245, 245, 220}};
    const ProcessFile file = ReadProcessFile(bytes.Path(), colors);
    Require(file.opened, "a file that is there is opened");
    std::int32_t line = 0;
    for (const ProcessFileError& error : file.errors) {
        Require(!error.text.empty(), "an error has a text");
        Require(error.line >= line, "errors come in the order of their lines");
        line = error.line;
    }
    Require(!file.steps.empty() && file.steps[0].kind == StepKind::Substrate,
            "the substrate comes first");
    if (file.errors.empty()) {
        Check(file);
    }
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelmo::Read(zelmo::MemoryFile(data, size));
    return 0;
}
