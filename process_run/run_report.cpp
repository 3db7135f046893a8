#include "process_run/run_report.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <string>

#include "base/clock.h"
#include "base/log_console.h"
#include "base/text.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "model/execute_step.h"

namespace zelmo {

LayoutLoad LoadLayout(const std::filesystem::path& path, LogConsole* console) {
    console->Write(
        fmt::format(L"Loading GDS database {} and calculating cell sizes", PathText(path)));
    LayoutLoad load;
    load.database = std::make_unique<GdsDatabase>();
    const std::int32_t start = ElapsedMilliseconds();
    load.error = ReadGdsFile(*load.database, path, console);
    if (load.error) {
        console->Write(fmt::format("Loading GDS database failed with error {}",
                                   LayoutErrorCode(load.error->kind)));
        load.database.reset();
        return load;
    }
    console->Write(std::wstring());
    const float seconds = static_cast<float>(ElapsedMilliseconds() - start) / 1000.0f;
    console->Write(fmt::format("GDS database finished loading in {:.3f} s", seconds));
    return load;
}

void ReportRunStart(LogConsole* console) {
    console->Write(std::wstring());
    console->Write(std::wstring(L"EXECUTING PROCESS STEPS"));
}

void ExecuteTimedStep(ProcessModel& model, const ProcessStep& step, LogConsole* console) {
    const std::int32_t start = ElapsedMilliseconds();
    ExecuteStep(model, step, console);
    const double seconds = static_cast<double>(ElapsedMilliseconds() - start) / 1000.0;
    console->Write(fmt::format("Completed in {:.3f} s", seconds));
}

void ReportRunEnd(std::int32_t startClock, LogConsole* console) {
    const float seconds = static_cast<float>(ElapsedMilliseconds() - startClock) / 1000.0f;
    console->Write(fmt::format("All process steps completed in {:.3f} sec", seconds));
    console->Write(std::wstring());
    console->Write(std::wstring(L"Use left and right arrows to browse through the process steps"));
}

}  // namespace zelmo
