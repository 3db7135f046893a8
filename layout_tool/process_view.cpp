#include "layout_tool/process_view.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string_view>
#include <variant>
#include <vector>

#include "base/data_files.h"
#include "base/text.h"
#include "command_line/inputs.h"
#include "command_line/reasons.h"
#include "layout_tool/cell_names.h"
#include "layout_tool/shown_text.h"
#include "model/process.h"
#include "process_file/color_table.h"
#include "process_run/fitted_window.h"

namespace zelmo {

namespace {

std::vector<std::filesystem::path> AssetFolders(const LayoutToolOptions& options) {
    if (options.assets) {
        return {*options.assets};
    }
    auto folders = InstalledDataFolders();
    folders.emplace_back();
    return folders;
}

/// The only cell on top.
Outcome ChooseTop(const LayoutReading& reading, const LayoutToolOptions& options,
                  std::optional<std::size_t>& cell) {
    constexpr std::size_t mostNames = 5;
    std::vector<std::string> tops;
    for (std::size_t i = 0; i < reading.cells.size(); ++i) {
        if (reading.cells[i].isTop && !reading.isAgain[i]) {
            cell = i;
            tops.push_back(ShownText(NameText(reading.database.cells[i].name)));
        }
    }
    if (tops.size() == 1) {
        return {};
    }
    const std::size_t shown = std::min(mostNames, tops.size());
    return {ExitStatus::Usage,
            fmt::format(
                "the layout {} has {} cells on top: give the CELL that is meant{}{}{}",
                TextOf(options.layout), tops.size(), tops.empty() ? "" : ", of ",
                fmt::join(tops.begin(), tops.begin() + static_cast<std::ptrdiff_t>(shown), ", "),
                shown < tops.size() ? " and others" : "")};
}

Outcome UnknownCell(const LayoutReading& reading, const LayoutToolOptions& options,
                    const std::string& name) {
    const std::string reason =
        fmt::format("has no cell \"{}\"{} (without a CELL all are listed)", ShownText(name),
                    NearestCells(reading, name, ListedCells(reading)));
    if (options.cell) {
        return {ExitStatus::Usage, fmt::format("the layout {} {}", TextOf(options.layout), reason)};
    }
    return ProcessFailure(*options.process,
                          fmt::format("the layout {} {}", TextOf(options.layout), reason));
}

}  // namespace

Outcome ReadProcess(const LayoutToolOptions& options, std::optional<ProcessFile>& process) {
    if (!options.process) {
        return {};
    }
    ColorTable colors;
    if (Outcome outcome = LoadColors(FindDataFile(AssetFolders(options), "colors.txt"), colors);
        outcome.Failed()) {
        return outcome;
    }
    const VariableValues none;  // the defaults of variables serve as in a run
    process = ReadProcessFile(*options.process, colors, &none);
    if (!process->opened) {
        return ProcessFailure(*options.process, WhyNotOpened(*options.process));
    }
    std::vector<std::string> errors;
    std::vector<ProcessFileError> faults;
    for (const ProcessFileError& error : process->errors) {
        errors.push_back(Utf8FromWide(WidenBytes(ErrorLine(error))));
        faults.push_back({error.line, Utf8FromWide(WidenBytes(error.text))});
    }
    return errors.empty() ? Outcome{} : ProcessFailure(*options.process, errors, faults);
}

Outcome ChooseCell(const LayoutReading& reading, const LayoutToolOptions& options,
                   const std::optional<ProcessFile>& process, std::optional<std::size_t>& cell) {
    const bool isNamed = options.cell.has_value() || process.has_value();
    if (!isNamed) {
        const bool isNeeded = options.picture || options.window.index() != 0 ||
                              !options.layers.empty() || options.places;
        return isNeeded ? ChooseTop(reading, options, cell) : Outcome{};
    }
    const std::string name = options.cell ? *options.cell : process->settings.cellName;
    cell = FindCell(reading, NameText(name));
    if (!cell) {
        return UnknownCell(reading, options, name);
    }
    if (reading.cells[*cell].isEndless) {
        return {ExitStatus::Layout,
                fmt::format("cell \"{}\" of the layout {} contains a cell that contains itself: it "
                            "has no end that could be counted",
                            ShownText(name), TextOf(options.layout))};
    }
    return {};
}

Outcome ChooseWindow(const LayoutReading& reading, const LayoutToolOptions& options,
                     const std::optional<ProcessFile>& process, CellFacts& facts) {
    if (const auto* const given = std::get_if<GivenWindow>(&options.window)) {
        facts.window = *given;
    } else if (const auto* const fitted = std::get_if<FittedWindow>(&options.window)) {
        const std::string cell(NameText(reading.database.cells[facts.cell].name));
        const WindowFit fit = FitWindow(reading.database, cell, process->steps, *fitted);
        if (!fit.failure.empty()) {
            return ProcessFailure(*options.process, ShownText(fit.failure));
        }
        facts.window = fit.window;
    } else if (process) {
        const ProcessSettings& settings = process->settings;
        facts.window = GivenWindow{settings.windowX, settings.windowY, settings.windowWidth,
                                   settings.windowHeight};
    }
    if (facts.window) {
        // What is higher than wide is cut to a square, as in a run.
        facts.window->height = std::min(facts.window->height, facts.window->width);
    }
    return {};
}

}  // namespace zelmo
