#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/window_argument.h"

namespace zelmo {

namespace {

class ViewOptions : public OptionGroup {
public:
    void Add(CLI::App& app) override {
        app.add_option("--cell", cell_, "The cell to look at, in place of the process file's")
            ->type_name("NAME");
        app.add_option("--window", window_,
                       "The window, in place of the process file's, in um: its lower left corner "
                       "and its size, or what fits around the cell's masks, with a margin")
            ->type_name("X,Y,DX,DY|fit[:MARGIN]");
    }

    std::string Take(const CLI::App& app, BatchOptions& options) override {
        if (app.count("--cell") > 0) {
            if (cell_.empty()) {
                return "--cell: the cell has no name";
            }
            options.view.cell = cell_;
        }
        if (app.count("--window") == 0) {
            return {};
        }
        WindowArgument argument = ParseWindowArgument(window_);
        options.view.window = argument.window;
        return argument.failure;
    }

private:
    std::string cell_;
    std::string window_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeViewOptions() {
    return std::make_unique<ViewOptions>();
}

}  // namespace zelmo
