#include "layout_tool/options.h"

#include <fmt/format.h>

#include <cstdint>
#include <variant>

#include <CLI/CLI.hpp>

#include "command_line/path_argument.h"
#include "command_line/window_argument.h"

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
struct Texts {
    std::string layout;
    std::string cell;
    std::string cellOption;
    std::string process;
    std::string window;
    std::string picture;
    std::string assets;
    std::int64_t mostTexts = 1000;
};

void AddOptions(CLI::App& app, Texts& texts, LayoutToolOptions& options) {
    AddUsualOptions(app, exitStatuses);
    app.add_option("LAYOUT.gds", texts.layout,
                   "The layout, a GDSII stream file, plain or gzip-compressed")
        ->required()
        ->type_name("");
    app.add_option("CELL", texts.cell,
                   "The cell to look into (default: all are listed; with --process or --picture, "
                   "the process file's cell, or the only one on top)")
        ->type_name("");
    app.add_option("--cell", texts.cellOption, "The same as CELL")->type_name("NAME");
    app.add_option("--process", texts.process,
                   "Tell which layers are the masks of this process file, what its window cuts of "
                   "them, and what is missing")
        ->type_name("PROCESS.txt");
    app.add_option("--window", texts.window,
                   "The window, in place of the process file's, in um: its lower left corner and "
                   "its size, or what fits around the cell's masks, with a margin")
        ->type_name("X,Y,DX,DY|fit[:MARGIN]");
    app.add_option("--picture", texts.picture,
                   "Draw the layers, or the masks of the process, from above; an older file is "
                   "replaced")
        ->type_name("FILE.svg");
    app.add_flag("--json", options.json, "Write data in place of tables");
    app.add_option("--texts", texts.mostTexts,
                   fmt::format("The most texts that are listed (default: {})", texts.mostTexts))
        ->type_name("COUNT");
    app.add_flag("--repair", options.repair,
                 "Read also a layout that is refused for a path's shape or for a missing cell, and "
                 "tell what became of it");
    app.add_option("--assets", texts.assets,
                   "Folder of colors.txt (default: the program's own, then the current directory)")
        ->type_name("DIR");
}

std::string TakeCell(const CLI::App& app, const Texts& texts, LayoutToolOptions& options) {
    if (app.count("CELL") > 0 && app.count("--cell") > 0) {
        return "--cell: the cell was given as CELL already";
    }
    if (app.count("CELL") > 0 || app.count("--cell") > 0) {
        options.cell = app.count("CELL") > 0 ? texts.cell : texts.cellOption;
        return options.cell->empty() ? "--cell: the cell has no name" : "";
    }
    return {};
}

std::string TakeWindow(const CLI::App& app, const Texts& texts, LayoutToolOptions& options) {
    if (app.count("--window") == 0) {
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

/// Sets what was typed; the reason why not, or nothing if all is well.
std::string TakeTexts(const CLI::App& app, const Texts& texts, LayoutToolOptions& options) {
    options.layout = PathFromArgument(texts.layout);
    for (const std::string& reason :
         {TakePath(app, "--process", texts.process, "file", options.process),
          TakePath(app, "--picture", texts.picture, "file", options.picture),
          TakePath(app, "--assets", texts.assets, "folder", options.assets),
          TakeCell(app, texts, options), TakeWindow(app, texts, options)}) {
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
    Texts texts;
    LayoutToolOptions options;
    CLI::App app(description, "zelmo-layout");
    AddOptions(app, texts, options);
    if (const auto end = ParseArguments(app, arguments)) {
        return {std::nullopt, *end};
    }
    if (const std::string reason = TakeTexts(app, texts, options); !reason.empty()) {
        return {std::nullopt, WrongUsage(reason)};
    }
    return {options, {}};
}

}  // namespace zelmo
