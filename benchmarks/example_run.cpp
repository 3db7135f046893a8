#include "benchmarks/example_run.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "base/log_console.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"
#include "process_file/color_table.h"
#include "process_run/prepare_run.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

namespace {

class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring) override {}
};

std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("run this in the build folder: no " + path.string());
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace

std::unique_ptr<ProcessModel> PrepareExample(std::string_view name, std::int32_t cells) {
    const std::filesystem::path folder = "examples";
    const std::string text = TextOf(folder / fmt::format("{}.txt", name));
    const TempFolder scratch;
    const std::filesystem::path process = scratch.Write(
        "process.txt",
        std::regex_replace(text, std::regex("-N [0-9]+"), fmt::format("-N {}", cells)));
    SilentConsole console;
    GdsDatabase database;
    if (ReadGdsFile(database, folder / fmt::format("{}.gds", name), &console)) {
        throw std::runtime_error("the example's layout did not load");
    }
    ColorTable colors;
    LoadColorTable(colors);
    PreparedRun run = PrepareRun(process, database, colors, &console);
    if (run.model == nullptr) {
        throw std::runtime_error("the example cannot be run");
    }
    return std::move(run.model);
}

void RunSteps(ProcessModel& model, std::size_t end) {
    for (std::size_t i = 0; i < std::min(end, model.steps.size()); ++i) {
        ExecuteStep(model, model.steps[i], nullptr);
    }
}

const ProcessModel& FinishedExample() {
    static const std::unique_ptr<ProcessModel> model = [] {
        auto finished = PrepareExample("cmos_inverter", 1000);
        RunSteps(*finished);
        return finished;
    }();
    return *model;
}

}  // namespace zelmo
