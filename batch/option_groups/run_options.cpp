#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

class RunOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddPositional("LAYOUT.gds", layout_,
                                "The layout, a GDSII stream file, plain or gzip-compressed", true);
        arguments.AddPositional("PROCESS.txt", process_, "The process file", true);
        arguments.AddFlag(
            "--repair", repair_,
            "Read also a layout that is refused for a path's shape or for a missing cell, "
            "and tell what became of it");
        arguments.AddFlag("--check", checkOnly_, "Read and check both files, run nothing");
        arguments.AddText(
            "--assets", assets_,
            "Folder of colors.txt and the shaders (default: the program's own, then the "
            "current directory)",
            "DIR");
        arguments.AddFlag("--quiet", quiet_,
                          "Write only errors, no notes unless --strict makes them errors");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        options.layout = PathFromArgument(layout_);
        options.process = PathFromArgument(process_);
        options.repair = repair_;
        options.checkOnly = checkOnly_;
        options.quiet = quiet_;
        return TakeFolder(arguments, "--assets", assets_, options.assets);
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
