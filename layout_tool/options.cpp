#include "layout_tool/options.h"

#include <fmt/format.h>

#include <cstdint>
#include <variant>

#include "command_line/arguments.h"
#include "command_line/path_argument.h"
#include "command_line/window_argument.h"
#include "layout_tool/layer_choice.h"

namespace zelmo {

namespace {

constexpr const char* description =
    "Tells what is in a layout: its unit, its cells and what is wrong with it; of a cell the\n"
    "layers with their shapes, boxes and areas, and the texts.";

constexpr const char* exitStatuses =
    "Exit status: 0 all done, 1 wrong usage (an unknown cell, too), 2 the layout did not load,\n"
    "3 the process file was refused or has no window in the layout, 4 the picture could not be\n"
    "written, 5 anything else.";

/// The command line as it was typed.
struct OptionTexts {
    std::string layout;
    std::string cell;
    std::string cellOption;
    std::string process;
    std::string window;
    std::string picture;
    std::string layers;
    std::string places;
    std::string assets;
    std::string diagnostics = "plain";
    std::int64_t mostTexts = 1000;
};

void AddOptions(Arguments& arguments, OptionTexts& texts, LayoutToolOptions& options) {
    arguments.AddPositional("LAYOUT.gds", texts.layout,
                            "The layout, a GDSII stream file, plain or gzip-compressed", true);
    arguments.AddPositional(
        "CELL", texts.cell,
        "The cell to look into (default: all are listed; with --process or --picture, "
        "the process file's cell, or the only one on top)",
        false);
    arguments.AddText("--cell", texts.cellOption, "The same as CELL", "NAME");
    arguments.AddText(
        "--process", texts.process,
        "Tell which layers are the masks of this process file, what its window cuts of "
        "them, and what is missing",
        "PROCESS.txt");
    arguments.AddText(
        "--window", texts.window,
        "The window, in place of the process file's, in um: its lower left corner and "
        "its size, or what fits around the cell's masks, with a margin",
        "X,Y,DX,DY|fit[:MARGIN]");
    arguments.AddText("--picture", texts.picture,
                      "Draw the layers, or the masks of the process, from above; an older file is "
                      "replaced",
                      "FILE.svg");
    arguments.AddText("--layers", texts.layers,
                      "Tell of these layers alone, and draw no others: 22 for all datatypes of a "
                      "layer, 33/0 for one",
                      "LIST");
    arguments.AddText("--places", texts.places,
                      "Tell where this cell is placed in the one that is looked into, at any depth",
                      "NAME");
    arguments.AddFlag("--json", options.json, "Write data in place of tables");
    arguments.AddNumber(
        "--texts", texts.mostTexts,
        fmt::format("The most texts that are listed (default: {})", texts.mostTexts), "COUNT");
    arguments.AddFlag(
        "--repair", options.repair,
        "Read also a layout that is refused for a path's shape or for a missing cell, and "
        "tell what became of it");
    arguments.AddText(
        "--assets", texts.assets,
        "Folder of colors.txt (default: the program's own, then the current directory)", "DIR");
    arguments.AddText("--diagnostics", texts.diagnostics, diagnosticHelp, diagnosticForm);
}

std::string TakeCell(const Arguments& arguments, const OptionTexts& texts,
                     LayoutToolOptions& options) {
    if (arguments.Count("CELL") > 0 && arguments.Count("--cell") > 0) {
        return "--cell: the cell was given as CELL already";
    }
    if (arguments.Count("CELL") > 0 || arguments.Count("--cell") > 0) {
        options.cell = arguments.Count("CELL") > 0 ? texts.cell : texts.cellOption;
        return options.cell->empty() ? "--cell: the cell has no name" : "";
    }
    return {};
}

std::string TakeWindow(const Arguments& arguments, const OptionTexts& texts,
                       LayoutToolOptions& options) {
    if (arguments.Count("--window") == 0) {
        return {};
    }
    const WindowArgument argument = ParseWindowArgument(texts.window);
    options.window = argument.window;
    if (!argument.failure.empty()) {
        return argument.failure;
    }
    const bool fits = std::holds_alternative<FittedWindow>(options.window);
    return fits && !options.process ? "--window: fit needs a --process, whose masks it fits around"
                                    : "";
}

std::string TakeLayers(const Arguments& arguments, const OptionTexts& texts,
                       LayoutToolOptions& options) {
    if (arguments.Count("--layers") == 0) {
        return {};
    }
    const LayerListArgument argument = ParseLayerList(texts.layers);
    options.layers = argument.layers;
    return argument.failure;
}

std::string TakePlaces(const Arguments& arguments, const OptionTexts& texts,
                       LayoutToolOptions& options) {
    if (arguments.Count("--places") == 0) {
        return {};
    }
    options.places = texts.places;
    return texts.places.empty() ? "--places: the cell has no name" : "";
}

/// Sets what was typed; the reason why not, or nothing if all is well.
std::string TakeTexts(const Arguments& arguments, const OptionTexts& texts,
                      LayoutToolOptions& options) {
    options.layout = PathFromArgument(texts.layout);
    for (const std::string& reason :
         {TakePath(arguments, "--process", texts.process, "file", options.process),
          TakePath(arguments, "--picture", texts.picture, "file", options.picture),
          TakePath(arguments, "--assets", texts.assets, "folder", options.assets),
          TakeCell(arguments, texts, options), TakeWindow(arguments, texts, options),
          TakeLayers(arguments, texts, options), TakePlaces(arguments, texts, options),
          TakeDiagnosticStyle(texts.diagnostics, options.diagnostics)}) {
        if (!reason.empty()) {
            return reason;
        }
    }
    if (texts.mostTexts < 0) {
        return "--texts: the number is below 0";
    }
    options.texts = static_cast<std::size_t>(texts.mostTexts);
    return {};
}

}  // namespace

LayoutCommandLine ParseLayoutCommandLine(const std::vector<std::string>& arguments) {
    OptionTexts texts;
    LayoutToolOptions options;
    Arguments known("zelmo-layout", description, exitStatuses);
    AddOptions(known, texts, options);
    if (const auto end = known.Parse(arguments)) {
        return {std::nullopt, *end};
    }
    if (const std::string reason = TakeTexts(known, texts, options); !reason.empty()) {
        return {std::nullopt, WrongUsage(reason)};
    }
    return {options, {}};
}

}  // namespace zelmo
