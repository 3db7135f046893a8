#include "process_run/execute_run.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "gds/gds_database.h"
#include "model/process_model.h"
#include "process_run/prepare_run.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

/// The lines with every time as "T".
Lines WithoutTimes(const Lines& lines) {
    Lines plain;
    for (const std::string& line : lines) {
        plain.push_back(std::regex_replace(line, std::regex("[0-9]+\\.[0-9]{3}"), "T"));
    }
    return plain;
}

TEST(ExecuteRun, LeavesItsLinesFromTheHeadlineToTheEnd) {
    GdsDatabase database;
    GdsCell cell;
    cell.name = "TOP";
    database.cells.push_back(std::move(cell));
    const TempFolder folder;
    const std::string text =
        "settings -version 4 -N 200\nlocation -x 0 -y 0 -dx 4 -dy 1\ngds -cell TOP\n"
        "deposition -name Ox -type oxide -thickness 100 -color 1 2 3 4\n";
    RecordingConsole console;
    const PreparedRun run = PrepareRun(folder.Write("a.txt", text), database, {}, &console);
    ASSERT_NE(run.model, nullptr);
    console.lines.clear();
    ReportRunStart(&console);
    for (const ProcessStep& step : run.model->steps) {
        ExecuteStepWithReport(*run.model, step, &console);
    }
    ReportRunEnd(0, &console);
    EXPECT_EQ(WithoutTimes(console.lines),
              (Lines{"", "EXECUTING PROCESS STEPS", "Executing Substrate ...", "Completed in T s",
                     "Executing Ox deposition ...", "Completed in T s",
                     "All process steps completed in T sec", "",
                     "Use left and right arrows to browse through the process steps"}));
    EXPECT_EQ(run.model->stack.layers.size(), 2u);
}

}  // namespace
}  // namespace zelmo
