#include "batch/listeners/dump_warner.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "batch/reporting.h"
#include "model/process_model.h"
#include "process_run/result_files.h"

namespace zelmo {

Outcome DumpWarner::Begin(const ProcessModel& model) {
    std::error_code ignored;
    for (const ResultFile& file : resultFiles) {
        const bool isAskedFor =
            std::any_of(model.steps.begin(), model.steps.end(),
                        [&](const ProcessStep& step) { return step.result == file.result; });
        if (isAskedFor && std::filesystem::exists(file.fileName, ignored)) {
            const std::string change = "in the current directory is replaced by the dump";
            reporting_.Warning({std::string(file.fileName), 0, change},
                               fmt::format("{} {}", file.fileName, change));
        }
    }
    return {};
}

}  // namespace zelmo
