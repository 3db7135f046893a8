#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "process_file/arguments.h"
#include "process_file/commands.h"
#include "process_file/reader.h"
#include "process_file/reader_state.h"
#include "process_file/settings_limits.h"

namespace zelmo {

namespace {

using namespace std::string_view_literals;

void CheckVersion(ReaderState& state, std::string_view line) {
    if (!HasArgument(line, "-version")) {
        ReportError(state,
                    "No -version argument given. This version of Zelmo is only compatible with "
                    "process files with version 3.");
        return;
    }
    if (ReadInteger(state, line, "-version") != 4) {
        ReportError(state,
                    "This version of Zelmo is only compatible with process files with version 4.");
    }
}

void ReadGridColumns(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    settings.gridColumns = 1000;
    if (HasArgument(line, "-N")) {
        settings.gridColumns = ReadInteger(state, line, "-N");
    }
    if (!IsGridColumns(settings.gridColumns)) {
        ReportError(state, "Value of -N argument needs to be between 200 and 2000");
    }
}

void ReadCameraAngle(ReaderState& state, std::string_view line, ProcessSettings& settings) {
    settings.cameraAngle = 30.0f;
    if (HasArgument(line, "-angle")) {
        settings.cameraAngle = static_cast<float>(ReadInteger(state, line, "-angle"));
    }
    // The limit is 90 though the text names 40: steeper views are welcome.
    if (!IsCameraAngle(settings.cameraAngle)) {
        ReportError(state, "Camera angle should be between 0 and 40 degrees");
    }
    settings.cameraAngle = UsedCameraAngle(settings.cameraAngle);
}

constexpr std::array settingsArguments = {"-version"sv, "-N"sv,       "-angle"sv,
                                          "-use_nm"sv,  "-heights"sv, "-legend"sv};

void ReadSettings(ReaderState& state, std::string_view line, ArgumentList allowed,
                  ProcessFile& file) {
    if (state.settingsSeen) {
        ReportError(state, "Duplicate settings (gen) command found");
    }
    state.settingsSeen = true;
    ProcessSettings& settings = file.settings;
    CheckArguments(state, line, allowed);
    CheckVersion(state, line);
    ReadGridColumns(state, line, settings);
    ReadCameraAngle(state, line, settings);
    state.useNm = HasArgument(line, "-use_nm");
    settings.lengthsInNanometres = state.useNm;
    settings.showHeights = HasArgument(line, "-heights");
    settings.showLegend = HasArgument(line, "-legend");
}

constexpr std::array locationArguments = {"-x"sv, "-y"sv, "-dx"sv, "-dy"sv};

void ReadLocation(ReaderState& state, std::string_view line, ArgumentList allowed,
                  ProcessFile& file) {
    if (state.locationSeen) {
        ReportError(state, "Duplicate location (cut) command found");
    }
    state.locationSeen = true;
    ProcessSettings& settings = file.settings;
    CheckArguments(state, line, allowed);
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

void ReadGds(ReaderState& state, std::string_view line, ArgumentList, ProcessFile& file) {
    if (state.gdsSeen) {
        ReportError(state, "Duplicate gds command found");
    }
    state.gdsSeen = true;
    file.settings.cellName = ReadWord(state, line, "-cell");
}

void ReadStop(ReaderState& state, std::string_view, ArgumentList, ProcessFile&) {
    state.stopSeen = true;
}

constexpr Command settingsCommands[] = {
    {"settings", std::nullopt, settingsArguments, ReadSettings},
    {"location", std::nullopt, locationArguments, ReadLocation},
    {"gds", std::nullopt, {}, ReadGds},
    {"stop", std::nullopt, {}, ReadStop},
};

}  // namespace

std::span<const Command> SettingsCommands() {
    return settingsCommands;
}

}  // namespace zelmo
