#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

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

class PictureOptions : public OptionGroup {
public:
    void Add(CLI::App& app) override {
        app.add_option("-o,--output", output_,
                       "Folder for the pictures (default: a new one beside the process file, named "
                       "after it and the time)")
            ->type_name("DIR");
        app.add_option("--format", format_, FormatHelp())
            ->type_name(fmt::format("{}", fmt::join(FormatNames(), "|")));
        app.add_flag("--overwrite", overwrite_,
                     "Replace the pictures and cuts of an earlier run of the same folder, and "
                     "nothing else in it; replace the page of --report");
        app.add_flag("--no-pictures", noPictures_, "Run the steps, draw nothing (needs no GL)");
    }

    std::string Take(const CLI::App& app, BatchOptions& options) override {
        const PictureFormat* const format = FindFormat(format_);
        if (format == nullptr) {
            return fmt::format("--format: \"{}\" is neither {}", format_,
                               Enumeration(FormatNames(), "nor"));
        }
        options.format = *format;
        options.pictures = !noPictures_;
        options.overwrite = overwrite_;
        return TakeFolder(app, "--output", output_, options.output);
    }

private:
    std::string output_;
    std::string format_{pictureFormats[0].name};
    bool overwrite_ = false;
    bool noPictures_ = false;
};

}  // namespace

std::unique_ptr<OptionGroup> MakePictureOptions() {
    return std::make_unique<PictureOptions>();
}

}  // namespace zelmo
