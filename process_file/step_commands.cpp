#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "process_file/arguments.h"
#include "process_file/commands.h"
#include "process_file/mask_argument.h"
#include "process_file/reader.h"
#include "process_file/reader_state.h"

namespace zelmo {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view thicknessNotPositive =
    "Invalid -thickness argument: Thickness needs to be positive.";

bool IsOutsideUnitRange(float value) {
    return value < 0.0f || value > 1.0f;
}

/// -name and -type of a new material.
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
}

/// -name, -type and -thickness of a new film; the thickness stays in nanometres.
void ReadFilm(ReaderState& state, std::string_view line, ProcessStep& step) {
    ReadMaterial(state, line, step);
    step.thickness = ReadDecimal(state, line, "-thickness");
    if (!(step.thickness > 0.0f)) {
        ReportError(state, thicknessNotPositive);
    }
}

/// A material can be a target from the next line on, however wrong its own is.
void AddMaterial(ReaderState& state, ProcessStep& step) {
    state.materials.push_back({step.material, step.materialType});
    step.label = step.material;
}

/// A depth below the surface, in micrometres.
void ReadDepth(ReaderState& state, std::string_view line, ProcessStep& step) {
    step.depth = ReadDecimal(state, line, "-depth") / nanometresPerMicrometre;
    if (step.depth < 0.0f) {
        ReportError(state, "Invalid -depth argument: Depth cannot be negative.");
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

/// Reports a name that an earlier step of the same kind has.
void CheckStepName(ReaderState& state, const ProcessStep& step, std::string_view command) {
    if (!state.stepNames.emplace(step.kind, step.processName).second) {
        ReportError(state, "Step name of %s process %s already exists", command, step.processName);
    }
}

constexpr std::array depositionArguments = {"-name"sv,  "-type"sv,   "-thickness"sv, "-sc"sv,
                                            "-color"sv, "-scolor"sv, "-alpha"sv};

void ReadDeposition(ReaderState& state, std::string_view line, ArgumentList allowed,
                    ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    ReadFilm(state, line, step);
    ReadStepCoverage(state, line, step);
    ReadColor(state, line, step, "Color name is not a recognized X11 color");
    ReadAlpha(state, line, step);
    step.thickness /= nanometresPerMicrometre;
    AddMaterial(state, step);
    step.description = fmt::format("{} deposition", step.material);
}

constexpr std::array coatingArguments = {"-name"sv,  "-type"sv,   "-thickness"sv, "-dop"sv,
                                         "-color"sv, "-scolor"sv, "-alpha"sv};

void ReadCoating(ReaderState& state, std::string_view line, ArgumentList allowed,
                 ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    ReadFilm(state, line, step);
    ReadPlanarisation(state, line, step);
    ReadColor(state, line, step, "Color name is unrecognized");
    ReadAlpha(state, line, step);
    step.thickness /= nanometresPerMicrometre;
    if (step.thickness < 0.0f) {
        ReportError(state, "Invalid -thickness argument: Thickness cannot be negative.");
    }
    AddMaterial(state, step);
    step.description = fmt::format("{} coating", step.material);
}

constexpr std::array photoArguments = {"-name"sv,  "-mask_id"sv,   "-type"sv, "-res"sv,
                                       "-taper"sv, "-thickness"sv, "-bias"sv, "-shift"sv};

void ReadAdjustment(ReaderState& state, std::string_view line, MaskAdjustment& adjustment) {
    if (const auto argument = FindArgumentWord(line, "-bias")) {
        adjustment.bias = ReadLayoutLength(state, *argument, "-bias");
    }
    if (const auto argument = FindArgumentWord(line, "-shift")) {
        std::array<float, 2> shift{};
        ReadDecimals(state, *argument, "-shift", shift);
        adjustment.shiftX = LayoutLength(state, shift[0]);
        adjustment.shiftY = LayoutLength(state, shift[1]);
    }
}

void ReadPhoto(ReaderState& state, std::string_view line, ArgumentList allowed, ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    if (!state.resistFree) {
        ReportError(state, "photo command not allowed if no preceding strip command");
    }
    state.resistFree = false;
    step.material = "PR";
    step.photoName = ReadWord(state, line, "-name");
    step.mask = ReadMask(state, line, "-mask_id");
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
    ReadAdjustment(state, line, step.adjustment);
    step.color = {0.8f, 0.8f, 0.9f};
    step.alpha = 1.0f;
    step.label = "PR";
    step.description = fmt::format("{} photo", step.photoName);
}

constexpr std::array etchArguments = {"-name"sv, "-targets"sv, "-depth"sv, "-iso"sv, "-resist"sv};

void ReadResistRate(ReaderState& state, std::string_view line, ProcessStep& step) {
    if (const auto argument = FindArgumentWord(line, "-resist")) {
        step.resistRate = ReadDecimal(state, *argument, "-resist");
    }
    if (IsOutsideUnitRange(step.resistRate)) {
        ReportError(state, "Invalid -resist argument: rate needs to be between 0.0 and 1.0");
    }
}

void ReadEtch(ReaderState& state, std::string_view line, ArgumentList allowed, ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    step.processName = ReadWord(state, line, "-name");
    ReadDepth(state, line, step);
    CheckStepName(state, step, "etch");
    ReadTargets(state, line, "-targets", step.targets);
    step.iso = ReadDecimal(state, line, "-iso");
    // The limit is 5.0 though the text names 1.0: faster sideways than down is welcome.
    if (step.iso < 0.0f || step.iso > 5.0f) {
        ReportError(state,
                    "The value of the -iso argument needs to be between 0.0 (anisotropic) and 1.0 "
                    "(full isotropic)");
    }
    ReadResistRate(state, line, step);
    step.description = fmt::format("{} etching", step.processName);
}

constexpr std::array releaseArguments = {"-targets"sv, "-name"sv};

void ReadRelease(ReaderState& state, std::string_view line, ArgumentList allowed,
                 ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    step.processName = ReadWord(state, line, "-name");
    CheckStepName(state, step, "release");
    ReadTargets(state, line, "-targets", step.targets);
    step.description = fmt::format("{} release etch", step.processName);
}

constexpr std::array stripArguments = {"-name"sv};

void ReadStrip(ReaderState& state, std::string_view line, ArgumentList allowed, ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    if (state.resistFree) {
        ReportError(state, "strip command not allowed if no prior photo process");
    }
    state.resistFree = true;
    CheckArguments(state, line, allowed);
    step.processName = ReadWord(state, line, "-name");
    CheckStepName(state, step, "strip");
    step.description = fmt::format("{} photoresist strip", step.processName);
}

constexpr std::array polishArguments = {"-name"sv, "-stop"sv, "-over"sv, "-above"sv, "-level"sv};

/// The plane is given in one of three ways, and none goes with the arguments of another.
ArgumentList PolishArgumentsOf(std::string_view line) {
    static constexpr std::array overStop = {"-name"sv, "-stop"sv, "-over"sv};
    static constexpr std::array aboveStop = {"-name"sv, "-stop"sv, "-above"sv};
    static constexpr std::array level = {"-name"sv, "-level"sv};
    if (HasArgument(line, "-stop")) {
        return HasArgument(line, "-over") ? ArgumentList(overStop) : aboveStop;
    }
    return level;
}

/// A height of the plane in micrometres. `quantity` is what it is called in the error.
float ReadPlane(ReaderState& state, std::string_view line, std::string_view argument,
                std::string_view quantity) {
    const float height = ReadDecimal(state, line, argument) / nanometresPerMicrometre;
    if (height < 0.0f) {
        ReportError(state, "Invalid %s argument: %s cannot be negative.", argument, quantity);
    }
    return height;
}

void ReadPolish(ReaderState& state, std::string_view line, ArgumentList, ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, PolishArgumentsOf(line));
    step.processName = ReadWord(state, line, "-name");
    CheckStepName(state, step, "polish");
    step.polishesToStop = HasArgument(line, "-stop");
    if (step.polishesToStop) {
        ReadTargets(state, line, "-stop", step.targets);
        if (HasArgument(line, "-over")) {
            step.level = -ReadPlane(state, line, "-over", "Depth");
        } else if (HasArgument(line, "-above")) {
            step.level = ReadPlane(state, line, "-above", "Height");
        }
    } else if (HasArgument(line, "-level")) {
        step.level = ReadPlane(state, line, "-level", "Height");
    } else {
        ReportError(state, "Missing -stop or -level argument");
    }
    step.description = fmt::format("{} polishing", step.processName);
}

constexpr std::array implantArguments = {"-name"sv,  "-type"sv,   "-targets"sv, "-depth"sv,
                                         "-color"sv, "-scolor"sv, "-alpha"sv};

void ReadImplant(ReaderState& state, std::string_view line, ArgumentList allowed,
                 ProcessFile& file) {
    ProcessStep& step = file.steps.back();
    CheckArguments(state, line, allowed);
    ReadMaterial(state, line, step);
    ReadTargets(state, line, "-targets", step.targets);
    ReadDepth(state, line, step);
    ReadColor(state, line, step, "Color name is unrecognized");
    ReadAlpha(state, line, step);
    AddMaterial(state, step);
    step.description = fmt::format("{} implant", step.material);
}

void ReadDump(ReaderState&, std::string_view, ArgumentList, ProcessFile& file) {
    file.steps.back().result = "stack data";
    file.steps.back().description = "dumping of stack data";
}

constexpr Command stepCommands[] = {
    {"deposition", StepKind::Deposition, depositionArguments, ReadDeposition},
    {"coating", StepKind::Coating, coatingArguments, ReadCoating},
    {"photo", StepKind::Photo, photoArguments, ReadPhoto},
    {"etch", StepKind::Etch, etchArguments, ReadEtch},
    {"release", StepKind::Release, releaseArguments, ReadRelease},
    {"strip", StepKind::Strip, stripArguments, ReadStrip},
    {"polish", StepKind::Polish, polishArguments, ReadPolish},
    {"implant", StepKind::Implant, implantArguments, ReadImplant},
    {"dump", StepKind::Dump, {}, ReadDump},
};

}  // namespace

std::span<const Command> StepCommands() {
    return stepCommands;
}

}  // namespace zelmo
