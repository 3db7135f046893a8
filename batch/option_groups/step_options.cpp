#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"

namespace zelmo {

namespace {

class StepOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText("--steps", steps_,
                          "The steps whose pictures and numbers are wanted (default: all; all are "
                          "executed): numbers, 1 the substrate's, ranges such as 3-7, first, last, "
                          "commands such as photo, names of the process file; commas in between",
                          "LIST");
        arguments.AddText("--until", until_,
                          "Execute up to this step, the last one that fits: a number or a name "
                          "as --steps takes them. Notes about the process file are about all of it",
                          "STEP");
        arguments.AddFlag(
            "--list-steps", listSteps_,
            "List the steps with the numbers and names that --steps and --until take, "
            "run nothing");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        if (arguments.Count("--steps") > 0 && steps_.empty()) {
            return "--steps: the list is empty";
        }
        if (arguments.Count("--until") > 0 && until_.empty()) {
            return "--until: no step is named";
        }
        if (listSteps_ && (options.checkOnly || arguments.Count("--watch") > 0)) {
            return "--list-steps runs nothing: leave --check and --watch out";
        }
        options.steps = steps_;
        options.until = until_;
        options.listSteps = listSteps_;
        return {};
    }

private:
    std::string steps_;
    std::string until_;
    bool listSteps_ = false;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeStepOptions() {
    return std::make_unique<StepOptions>();
}

}  // namespace zelmo
