#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

class RunOptions : public OptionGroup {
public:
    void Add(CLI::App& app) override {
        app.add_option("LAYOUT.gds", layout_,
                       "The layout, a GDSII stream file, plain or gzip-compressed")
            ->required()
            ->type_name("");
        app.add_option("PROCESS.txt", process_, "The process file")->required()->type_name("");
        app.add_flag("--repair", repair_,
                     "Read also a layout that is refused for a path's shape or for a missing cell, "
                     "and tell what became of it");
        app.add_flag("--check", checkOnly_, "Read and check both files, run nothing");
        app.add_option("--assets", assets_,
                       "Folder of colors.txt and the shaders (default: the program's own, then the "
                       "current directory)")
            ->type_name("DIR");
        app.add_flag("--quiet", quiet_,
                     "Write only errors, no notes unless --strict makes them errors");
    }

    std::string Take(const CLI::App& app, BatchOptions& options) override {
        options.layout = PathFromArgument(layout_);
        options.process = PathFromArgument(process_);
        options.repair = repair_;
        options.checkOnly = checkOnly_;
        options.quiet = quiet_;
        return TakeFolder(app, "--assets", assets_, options.assets);
    }

private:
    std::string layout_;
    std::string process_;
    std::string assets_;
    bool repair_ = false;
    bool checkOnly_ = false;
    bool quiet_ = false;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeRunOptions() {
    return std::make_unique<RunOptions>();
}

}  // namespace zelmo
