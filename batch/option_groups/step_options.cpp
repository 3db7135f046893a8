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
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        if (arguments.Count("--steps") > 0 && steps_.empty()) {
            return "--steps: the list is empty";
        }
        options.steps = steps_;
        return {};
    }

private:
    std::string steps_;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeStepOptions() {
    return std::make_unique<StepOptions>();
}

}  // namespace zelmo
