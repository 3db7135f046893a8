#include <fmt/format.h>

#include <string>

#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"
#include "batch/options.h"
#include "command_line/path_argument.h"

namespace zelmo {

namespace {

/// A page needs two columns; the grid has no more than these.
constexpr std::int32_t leastColumns = 2;
constexpr std::int32_t mostColumns = 2000;

class ReportOptions : public OptionGroup {
public:
    void Add(CLI::App& app) override {
        app.add_option("--report", file_,
                       "File for a page of the run that a browser shows by itself: the steps with "
                       "their pictures, and the stack after each in 3D")
            ->type_name("FILE.html");
        app.add_option("--report-columns", columns_,
                       fmt::format("With --report: how many columns of the grid the page has at "
                                   "most (default: {})",
                                   ReportChoice().columns))
            ->type_name("N");
    }

    std::string Take(const CLI::App& app, BatchOptions& options) override {
        ReportChoice& report = options.report;
        if (app.count("--report-columns") > 0) {
            if (app.count("--report") == 0) {
                return "--report-columns needs a --report FILE.html";
            }
            if (columns_ < leastColumns || columns_ > mostColumns) {
                return fmt::format("--report-columns: not a number of columns from {} to {}",
                                   leastColumns, mostColumns);
            }
            report.columns = static_cast<std::int32_t>(columns_);
        }
        return TakePath(app, "--report", file_, "file", report.file);
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
