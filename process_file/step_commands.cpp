#include "process_file/step_commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "model/process.h"
#include "process_file/arguments.h"
#include "process_file/reader_state.h"

namespace zelmo {

namespace {

using namespace std::string_view_literals;

// Allowed arguments, command by command. `gds`, `dump` and `stop` are not checked.
constexpr std::array settingsArguments = {"-version"sv, "-N"sv,       "-angle"sv,
                                          "-use_nm"sv,  "-heights"sv, "-legend"sv};
constexpr std::array locationArguments = {"-x"sv, "-y"sv, "-dx"sv, "-dy"sv};
constexpr std::array depositionArguments = {"-name"sv,  "-type"sv,   "-thickness"sv, "-sc"sv,
                                            "-color"sv, "-scolor"sv, "-alpha"sv};
constexpr std::array coatingArguments = {"-name"sv,  "-type"sv,   "-thickness"sv, "-dop"sv,
                                         "-color"sv, "-scolor"sv, "-alpha"sv};
constexpr std::array photoArguments = {"-name"sv, "-mask_id"sv, "-type"sv,
                                       "-res"sv,  "-taper"sv,   "-thickness"sv};
constexpr std::array etchArguments = {"-name"sv, "-targets"sv, "-depth"sv, "-iso"sv};
constexpr std::array stripArguments = {"-name"sv};
constexpr std::array releaseArguments = {"-targets"sv, "-name"sv};

constexpr float nanometresPerMicrometre = 1000.0f;
constexpr std::string_view thicknessNotPositive =
    "Invalid -thickness argument: Thickness needs to be positive.";

bool IsOutsideUnitRange(float value) {
    return value < 0.0f || value > 1.0f;
}

void CheckVersion(ReaderState& state, std::string_view line) {
    if (!HasArgument(line, "-version")) {
        ReportError(state,
                    "No -version argument given. This version of Zelmo is only compatible with "
                    "process files with version 3.");
        return;
    }
    state.fileVersion = ReadInteger(state, line, "-version");
    if (state.fileVersion != 4) {
        ReportError(state,
                    "This version of Zelmo is only compatible with process files with version 4.");
    }
}

void ReadGridColumns(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    settings.gridColumns = 1000;
    if (HasArgument(line, "-N")) {
        settings.gridColumns = ReadInteger(state, line, "-N");
    }
    if (settings.gridColumns < 200 || settings.gridColumns > 2000) {
        ReportError(state, "Value of -N argument needs to be between 200 and 2000");
    }
}

void ReadCameraAngle(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    settings.cameraAngle = 30.0f;
    if (HasArgument(line, "-angle")) {
        settings.cameraAngle = static_cast<float>(ReadInteger(state, line, "-angle"));
    }
    // The limit is 90 though the text names 40: steeper views are welcome.
    if (settings.cameraAngle > 90.0f || settings.cameraAngle < 0.0f) {
        ReportError(state, "Camera angle should be between 0 and 40 degrees");
    }
    settings.cameraAngle = std::min(settings.cameraAngle, 89.0f);
}

/// A length of the location window or the resolution, in the unit that `settings` chose.
float ReadLayoutLength(ReaderState& state, std::string_view line, std::string_view argument) {
    const float value = ReadDecimal(state, line, argument);
    return state.useNm ? value / nanometresPerMicrometre : value;
}

/// -name, -type and -thickness of a new material; the thickness stays in nanometres.
void ReadMaterial(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.material = ReadWord(state, line, "-name");
    const auto hasThisName = [&](const MaterialEntry& entry) {
        return entry.name == step.material;
    };
    if (std::any_of(state.materials.begin(), state.materials.end(), hasThisName)) {
        ReportError(state, "Material %s in -name argument already defined. Choose another name.",
                    step.material);
    }
    step.materialType = ReadWord(state, line, "-type");
    step.thickness = ReadDecimal(state, line, "-thickness");
    if (!(step.thickness > 0.0f)) {
        ReportError(state, thicknessNotPositive);
    }
}

void ReadStepCoverage(ReaderState& state, std::string_view line, ProcessStep& step) {
    // A -scolor in front of -sc, or without one, is what this search finds.
    if (HasArgument(line, "-sc")) {
        step.stepCoverage = ReadDecimal(state, line, "-sc");
    }
    step.stepCoverage = std::max(step.stepCoverage, 0.1f);
    if (IsOutsideUnitRange(step.stepCoverage)) {
        ReportError(state, "Invalid -sc argument: step coverage need to be between 0.0 and 1.0");
    }
}

void ReadPlanarisation(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.dop = 1.0f;
    if (HasArgument(line, "-dop")) {
        step.dop = ReadDecimal(state, line, "-dop");
    }
    if (IsOutsideUnitRange(step.dop)) {
        ReportError(state, "Invalid -dop argument");
    }
}

void ReadAlpha(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.alpha = 1.0f;
    if (HasArgument(line, "-alpha")) {
        step.alpha = ReadDecimal(state, line, "-alpha");
    }
    if (IsOutsideUnitRange(step.alpha)) {
        ReportError(state, "Invalid -alpha argument");
    }
}

/// Reports a name that is already in the list of its command.
void CheckStepName(ReaderState& state, const std::vector<std::string>& names,
                   const std::string& name, std::string_view text) {
    if (std::find(names.begin(), names.end(), name) != names.end()) {
        ReportError(state, text, name);
    }
}

}  // namespace

void ReadSettings(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    CheckArguments(state, line, settingsArguments);
    CheckVersion(state, line);
    ReadGridColumns(state, line, settings);
    ReadCameraAngle(state, line, settings);
    state.useNm = HasArgument(line, "-use_nm");
    settings.showHeights = HasArgument(line, "-heights");
    settings.showLegend = HasArgument(line, "-legend");
}

void ReadLocation(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    CheckArguments(state, line, locationArguments);
    settings.windowX = ReadLayoutLength(state, line, "-x");
    settings.windowY = ReadLayoutLength(state, line, "-y");
    settings.windowWidth = ReadLayoutLength(state, line, "-dx");
    settings.windowHeight = ReadLayoutLength(state, line, "-dy");
    if (settings.windowWidth <= 0.0f) {
        ReportError(state, "Invalid -dx argument");
    }
    if (settings.windowHeight <= 0.0f) {
        ReportError(state, "Invalid -dy argument");
    }
    // The model relies on a window that is never higher than wide.
    if (settings.windowHeight > settings.windowWidth) {
        settings.windowHeight = settings.windowWidth;
    }
    // Holds for negative heights only.
    if (settings.windowHeight * 0.25f > settings.windowHeight) {
        settings.windowHeight = settings.windowWidth * 0.25f;
    }
}

void ReadGds(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    settings.cellName = ReadWord(state, line, "-cell");
}

void ReadDeposition(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Deposition;
    CheckArguments(state, line, depositionArguments);
    ReadMaterial(state, line, step);
    ReadStepCoverage(state, line, step);
    ReadColor(state, line, step, "Color name is not a recognized X11 color");
    ReadAlpha(state, line, step);
    step.thickness /= nanometresPerMicrometre;
    state.materials.push_back({step.material, step.materialType});
    step.label = step.material;
    step.description = fmt::format("{} deposition", step.material);
}

void ReadCoating(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Coating;
    CheckArguments(state, line, coatingArguments);
    ReadMaterial(state, line, step);
    ReadPlanarisation(state, line, step);
    ReadColor(state, line, step, "Color name is unrecognized");
    ReadAlpha(state, line, step);
    step.thickness /= nanometresPerMicrometre;
    if (step.thickness < 0.0f) {
        ReportError(state, "Invalid -thickness argument: Thickness cannot be negative.");
    }
    state.materials.push_back({step.material, step.materialType});
    step.label = step.material;
    step.description = fmt::format("{} coating", step.material);
}

void ReadPhoto(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Photo;
    CheckArguments(state, line, photoArguments);
    if (!state.resistFree) {
        ReportError(state, "photo command not allowed if no preceding strip command");
    }
    state.resistFree = false;
    step.material = "PR";
    step.photoName = ReadWord(state, line, "-name");
    const std::int32_t maskId = ReadInteger(state, line, "-mask_id");
    step.maskId = static_cast<std::uint32_t>(maskId);
    if (maskId > 65535) {
        ReportError(state, "Invalid -mask_id value");
    }
    const std::int32_t maskType = ReadInteger(state, line, "-type");
    if (maskType > 1) {
        ReportError(state,
                    "Invalid -type argument: mask type needs to be  1 (dark type) or 0 (clear "
                    "type)");
    }
    step.maskDark = maskType != 0;
    step.res = ReadLayoutLength(state, line, "-res");
    if (step.res < 0.0f) {
        ReportError(state, "Invalid -res argument: needs to be a positive decimal number or 0.0");
    }
    step.thickness = ReadDecimal(state, line, "-thickness") / nanometresPerMicrometre;
    if (!(step.thickness > 0.0f)) {
        ReportError(state, thicknessNotPositive);
    }
    step.taper = 60.0f;
    if (HasArgument(line, "-taper")) {
        step.taper = static_cast<float>(ReadInteger(state, line, "-taper"));
    }
    step.color = {0.8f, 0.8f, 0.9f};
    step.alpha = 1.0f;
    step.label = "PR";
    step.description = fmt::format("{} photo", step.photoName);
}

void ReadEtch(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Etch;
    CheckArguments(state, line, etchArguments);
    step.processName = ReadWord(state, line, "-name");
    step.depth = ReadDecimal(state, line, "-depth") / nanometresPerMicrometre;
    if (step.depth < 0.0f) {
        ReportError(state, "Invalid -depth argument: Depth cannot be negative.");
    }
    CheckStepName(state, state.etchNames, step.processName,
                  "Step name of etch process %s already exists");
    ReadTargets(state, line, step.targets);
    step.iso = ReadDecimal(state, line, "-iso");
    // The limit is 5.0 though the text names 1.0: faster sideways than down is welcome.
    if (step.iso < 0.0f || step.iso > 5.0f) {
        ReportError(state,
                    "The value of the -iso argument needs to be between 0.0 (anisotropic) and 1.0 "
                    "(full isotropic)");
    }
    step.description = fmt::format("{} etching", step.processName);
    state.etchNames.push_back(step.processName);
}

void ReadRelease(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Release;
    CheckArguments(state, line, releaseArguments);
    step.processName = ReadWord(state, line, "-name");
    CheckStepName(state, state.releaseNames, step.processName,
                  "Step name of release process %s already exists");
    ReadTargets(state, line, step.targets);
    step.description = fmt::format("{} release etch", step.processName);
    state.releaseNames.push_back(step.processName);
}

void ReadStrip(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.kind = StepKind::Strip;
    if (state.resistFree) {
        ReportError(state, "strip command not allowed if no prior photo process");
    }
    state.resistFree = true;
    CheckArguments(state, line, stripArguments);
    step.processName = ReadWord(state, line, "-name");
    CheckStepName(state, state.stripNames, step.processName,
                  "Step name of strip process %s already exists");
    step.description = fmt::format("{} photoresist strip", step.processName);
    state.stripNames.push_back(step.processName);
}

}  // namespace zelmo
