#include <fmt/format.h>
#include <fmt/ranges.h>

#include <optional>
#include <string>
#include <vector>

#include "batch/listeners/model_writer.h"
#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/number_argument.h"
#include "command_line/path_argument.h"
#include "results/models/model_files.h"

namespace zelmo {

namespace {

constexpr double greatestTolerance = 1e6;

/// ".glb or .stl"
std::string Extensions() {
    std::vector<std::string> extensions;
    for (const ModelFormat& format : modelFormats) {
        extensions.push_back(fmt::format(".{}", format.extension));
    }
    return fmt::format("{}", fmt::join(extensions, " or "));
}

class ModelOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText(
            "--export", file_,
            "The stack after the last step as a model of closed solids, one for each "
            "layer: glTF (.glb) or STL (.stl), in micrometres; with --steps after the "
            "chosen ones, a file each where there are several",
            "FILE");
        arguments.AddText(
            "--export-tolerance", tolerance_,
            "By how much the model may move a surface to have fewer triangles (default: "
            "0.1)",
            "NM");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        if (arguments.Count("--export-tolerance") > 0) {
            if (arguments.Count("--export") == 0) {
                return "--export-tolerance needs an --export FILE";
            }
            const std::optional<double> tolerance = ReadNumber<double>(tolerance_);
            if (!tolerance || *tolerance < 0.0 || *tolerance > greatestTolerance) {
                return fmt::format("--export-tolerance: \"{}\" is no number from 0 to 1000000",
                                   tolerance_);
            }
            options.model.accuracy.tolerance = *tolerance;
        }
        if (std::string failure =
                TakePath(arguments, "--export", file_, "file", options.model.file);
            !failure.empty()) {
            return failure;
        }
        if (options.model.file && FormatOfModel(*options.model.file) == nullptr) {
            return fmt::format("--export: the name \"{}\" does not end in {}", file_, Extensions());
        }
        return {};
    }

private:
    std::string file_;
    std::string tolerance_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeModelOptions() {
    return std::make_unique<ModelOptions>();
}

}  // namespace zelmo
