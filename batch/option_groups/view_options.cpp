#include <fmt/format.h>

#include <cstdint>
#include <optional>
#include <string>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/whole_number.h"
#include "command_line/window_argument.h"
#include "process_file/settings_limits.h"

namespace zelmo {

namespace {

class ViewOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText("--cell", cell_, "The cell to look at, in place of the process file's",
                          "NAME");
        arguments.AddText(
            "--window", window_,
            "The window, in place of the process file's, in um: its lower left corner "
            "and its size, or what fits around the cell's masks, with a margin",
            "X,Y,DX,DY|fit[:MARGIN]");
        arguments.AddText("--columns", columns_,
                          "Grid points across the picture, 200 to 2000, in place of the process "
                          "file's",
                          "N");
        arguments.AddText("--angle", angle_,
                          "Elevation of the camera in whole degrees, 0 to 90, in place of the "
                          "process file's",
                          "DEG");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        if (arguments.Count("--cell") > 0) {
            if (cell_.empty()) {
                return "--cell: the cell has no name";
            }
            options.view.cell = cell_;
        }
        if (arguments.Count("--window") > 0) {
            WindowArgument argument = ParseWindowArgument(window_);
            options.view.window = argument.window;
            if (!argument.failure.empty()) {
                return argument.failure;
            }
        }
        return TakeGridAndCamera(arguments, options.view);
    }

private:
    std::string TakeGridAndCamera(const Arguments& arguments, ViewChoice& view) const {
        if (arguments.Count("--columns") > 0) {
            const WholeNumber columns =
                ReadWholeNumber("--columns", columns_, fewestGridColumns, mostGridColumns);
            if (!columns.failure.empty()) {
                return columns.failure;
            }
            view.gridColumns = columns.value;
        }
        if (arguments.Count("--angle") > 0) {
            const WholeNumber angle = ReadWholeNumber(
                "--angle", angle_, 0, static_cast<std::int32_t>(largestCameraAngle), " of degrees");
            if (!angle.failure.empty()) {
                return angle.failure;
            }
            view.cameraAngle = static_cast<float>(angle.value);
        }
        return {};
    }

    std::string cell_;
    std::string window_;
    std::string columns_;
    std::string angle_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeViewOptions() {
    return std::make_unique<ViewOptions>();
}

}  // namespace zelmo
