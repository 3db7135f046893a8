#include <cstdint>
#include <string>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"

namespace zelmo {

namespace {

class WatchOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddFlag(
            "--watch", watch_,
            "Stay, and run again whenever the process file or the layout is saved: what a "
            "change does not touch is not done again. Ctrl-C ends it");
        arguments.AddNumber(
            "--memory", mebibytes_,
            "With --watch: what kept states of the stack may take (default: a quarter "
            "of the machine's memory); those that do not fit are made anew when needed",
            "MIB");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        options.watch = watch_;
        if (watch_ && options.checkOnly) {
            return "--watch and --check exclude each other: leave one of them out";
        }
        if (arguments.Count("--memory") == 0) {
            return {};
        }
        if (!watch_) {
            return "--memory is for --watch: give both or neither";
        }
        constexpr std::int64_t most = std::int64_t{1} << 30;
        if (mebibytes_ < 0 || mebibytes_ > most) {
            return "--memory: not a number of MiB from 0 to " + std::to_string(most);
        }
        options.memoryMebibytes = static_cast<std::uint64_t>(mebibytes_);
        return {};
    }

private:
    bool watch_ = false;
    std::int64_t mebibytes_ = 0;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeWatchOptions() {
    return std::make_unique<WatchOptions>();
}

}  // namespace zelmo
