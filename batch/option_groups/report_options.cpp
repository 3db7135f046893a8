#include <fmt/format.h>

#include <string>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/arguments.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

/// A page needs two columns; the grid has no more than these.
constexpr std::int32_t leastColumns = 2;
constexpr std::int32_t mostColumns = 2000;

class ReportOptions : public OptionGroup {
public:
    void Add(Arguments& arguments) override {
        arguments.AddText(
            "--report", file_,
            "File for a page of the run that a browser shows by itself: the steps with "
            "their pictures, and the stack after each in 3D",
            "FILE.html");
        arguments.AddNumber(
            "--report-columns", columns_,
            fmt::format("With --report: how many columns of the grid the page has at "
                        "most (default: {})",
                        ReportChoice().columns),
            "N");
    }

    std::string Take(const Arguments& arguments, BatchOptions& options) override {
        ReportChoice& report = options.report;
        if (arguments.Count("--report-columns") > 0) {
            if (arguments.Count("--report") == 0) {
                return "--report-columns needs a --report FILE.html";
            }
            if (columns_ < leastColumns || columns_ > mostColumns) {
                return fmt::format("--report-columns: not a number of columns from {} to {}",
                                   leastColumns, mostColumns);
            }
            report.columns = static_cast<std::int32_t>(columns_);
        }
        return TakePath(arguments, "--report", file_, "file", report.file);
    }

private:
    std::string file_;
    std::int64_t columns_ = 0;
};

}  // namespace

std::unique_ptr<OptionGroup> MakeReportOptions() {
    return std::make_unique<ReportOptions>();
}

}  // namespace zelmo
