#include "batch/options.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

#include <CLI/CLI.hpp>

#include "base/text.h"
#include "base/version.h"
#include "batch/window_argument.h"

namespace zelmo {

namespace {

constexpr const char* description =
    "Runs a process on a layout, step by step, and saves a picture of the stack after every step.\n"
    "Standard output shows the lines of the run; errors and progress go to standard error.";

constexpr const char* exitStatuses =
    "Exit status: 0 all done, 1 wrong usage, 2 the layout did not load, 3 the process file was\n"
    "refused or the run could not be prepared, 4 a picture could not be made or written,\n"
    "5 anything else.";

/// The command line as it was typed.
struct Texts {
    std::string layout;
    std::string process;
    std::string output;
    std::string assets;
    std::string cell;
    std::string window;
    std::string format{pictureFormats[0].name};
    bool noPictures = false;
};

/// The names of all picture formats in alphabetical order.
std::vector<std::string> FormatNames() {
    std::vector<std::string> names;
    for (const PictureFormat& format : pictureFormats) {
        names.emplace_back(format.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// "a, b or c" for the word "or".
std::string Enumeration(const std::vector<std::string>& names, const std::string& word) {
    const std::span rest(names.begin(), names.end() - 1);
    return fmt::format("{} {} {}", fmt::join(rest, ", "), word, names.back());
}

/// "Picture files: png (default) or bmp"
std::string FormatHelp() {
    std::vector<std::string> names = FormatNames();
    const std::string usual(pictureFormats[0].name);
    std::erase(names, usual);
    names.insert(names.begin(), usual + " (default)");
    return "Picture files: " + Enumeration(names, "or");
}

const PictureFormat* FindFormat(std::string_view name) {
    const auto hasThisName = [&](const PictureFormat& format) { return format.name == name; };
    const auto* const found =
        std::find_if(std::begin(pictureFormats), std::end(pictureFormats), hasThisName);
    return found != std::end(pictureFormats) ? found : nullptr;
}

std::filesystem::path PathFromArgument(const std::string& argument) {
    return PathFromText(WideFromUtf8(argument));
}

void AddOptions(CLI::App& app, Texts& texts, BatchOptions& options) {
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", std::string("zelmo-batch ") + programVersion);
    app.footer(exitStatuses);
    app.add_option("LAYOUT.gds", texts.layout,
                   "The layout, a GDSII stream file, plain or gzip-compressed")
        ->required()
        ->type_name("");
    app.add_option("PROCESS.txt", texts.process, "The process file")->required()->type_name("");
    app.add_option("-o,--output", texts.output,
                   "Folder for the pictures (default: a new one beside the process file, named "
                   "after it and the time)")
        ->type_name("DIR");
    app.add_option("--cell", texts.cell, "The cell to look at, in place of the process file's")
        ->type_name("NAME");
    app.add_option("--window", texts.window,
                   "The window, in place of the process file's, in um: its lower left corner and "
                   "its size, or what fits around the cell's masks, with a margin")
        ->type_name("X,Y,DX,DY|fit[:MARGIN]");
    app.add_option("--format", texts.format, FormatHelp())
        ->type_name(fmt::format("{}", fmt::join(FormatNames(), "|")));
    app.add_flag("--repair", options.repair,
                 "Read also a layout that is refused for a path's shape or for a missing cell, and "
                 "tell what became of it");
    app.add_flag("--check", options.checkOnly, "Read and check both files, run nothing");
    app.add_flag("--no-pictures", texts.noPictures, "Run the steps, draw nothing (needs no GL)");
    app.add_option("--assets", texts.assets,
                   "Folder of colors.txt and the shaders (default: the program's own, then the "
                   "current directory)")
        ->type_name("DIR");
    app.add_flag("--quiet", options.quiet, "Write only errors");
}

/// What the parser cannot see; the reason, or nothing if all is well.
std::string CheckTexts(const CLI::App& app, const Texts& texts) {
    if (FindFormat(texts.format) == nullptr) {
        return fmt::format("--format: \"{}\" is neither {}", texts.format,
                           Enumeration(FormatNames(), "nor"));
    }
    for (const auto& [name, value] :
         {std::pair("--output", &texts.output), std::pair("--assets", &texts.assets)}) {
        if (app.count(name) > 0 && value->empty()) {
            return std::string(name) + ": the folder has no name";
        }
    }
    if (app.count("--cell") > 0 && texts.cell.empty()) {
        return "--cell: the cell has no name";
    }
    return {};
}

/// Sets what is to be looked at; the reason why not, or nothing if all is well.
std::string TakeView(const CLI::App& app, const Texts& texts, ViewChoice& view) {
    if (app.count("--cell") > 0) {
        view.cell = texts.cell;
    }
    if (app.count("--window") == 0) {
        return {};
    }
    WindowArgument argument = ParseWindowArgument(texts.window);
    view.window = argument.window;
    return argument.failure;
}

CommandLine UsageError(const std::string& reason) {
    return {std::nullopt, ExitStatus::Usage, reason + " (--help lists the options)"};
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    Texts texts;
    BatchOptions options;
    CLI::App app(description, "zelmo-batch");
    AddOptions(app, texts, options);
    try {
        // The parser takes its arguments last first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, ExitStatus::Success, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, ExitStatus::Success, std::string(version.what()) + "\n"};
    } catch (const CLI::Error& error) {
        return UsageError(error.what());
    }
    if (const std::string reason = CheckTexts(app, texts); !reason.empty()) {
        return UsageError(reason);
    }
    if (const std::string reason = TakeView(app, texts, options.view); !reason.empty()) {
        return UsageError(reason);
    }
    options.layout = PathFromArgument(texts.layout);
    options.process = PathFromArgument(texts.process);
    options.format = *FindFormat(texts.format);
    options.pictures = !texts.noPictures;
    if (app.count("--output") > 0) {
        options.output = PathFromArgument(texts.output);
    }
    if (app.count("--assets") > 0) {
        options.assets = PathFromArgument(texts.assets);
    }
    return {options, ExitStatus::Success, {}};
}

}  // namespace zelmo
