#include "command_line/inputs.h"

#include <fmt/format.h>

#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include "base/log_console.h"
#include "command_line/reasons.h"
#include "gds/gds_database.h"
#include "gds/gzip_fault.h"
#include "gds/layout_error.h"
#include "model/process_model.h"
#include "process_run/load_layout.h"
#include "process_run/prepare_run.h"

namespace zelmo {

namespace {

constexpr const char* outOfMemory = "there is not enough memory";

std::string LayoutReason(const std::filesystem::path& path, const LayoutError& error) {
    const std::int32_t code = LayoutErrorCode(error.kind);
    if (error.unpacking) {
        return fmt::format("{} at byte {} (error {}): {}", GzipFaultReason(*error.unpacking),
                           error.byte, code, GzipFaultWayOut(*error.unpacking));
    }
    const std::string reason = error.kind == LayoutErrorKind::FileUnreadable
                                   ? WhyNotOpened(path)
                                   : LayoutErrorReason(error.kind);
    return fmt::format("{} (error {})", reason, code);
}

}  // namespace

std::string WhyNotOpened(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) {
        return "it is a folder";
    }
    if (status.type() == std::filesystem::file_type::not_found) {
        return "there is no such file";
    }
    return error ? error.message() : std::string("it cannot be read");
}

Outcome LayoutFailure(const std::filesystem::path& path, const std::string& reason) {
    const std::string file = TextOf(path);
    return {ExitStatus::Layout,
            fmt::format("the layout {} did not load: {}", file, reason),
            {{file, 0, reason}}};
}

Outcome ProcessFailure(const std::filesystem::path& path, const std::string& reason) {
    const std::string file = TextOf(path);
    return {ExitStatus::Process,
            fmt::format("the process file {} cannot be run: {}", file, reason),
            {{file, 0, reason}}};
}

Outcome ProcessFailure(const std::filesystem::path& path, const std::vector<std::string>& errors,
                       const std::vector<ProcessFileError>& faults) {
    Outcome outcome = ProcessFailure(path, FirstOf(errors));
    outcome.faults.clear();
    for (const ProcessFileError& fault : faults) {
        outcome.faults.push_back({TextOf(path), fault.line, fault.text});
    }
    return outcome;
}

Outcome LayoutRefusal(const std::filesystem::path& path, const LayoutError& error) {
    return LayoutFailure(path, LayoutReason(path, error));
}

Outcome LoadColors(const std::filesystem::path& path, ColorTable& colors) {
    if (LoadColorTable(colors, path)) {
        return {};
    }
    return {
        ExitStatus::Other,
        fmt::format("Could not load color file or color file contains errors: {}", TextOf(path))};
}

Outcome LoadLayoutFile(const std::filesystem::path& path, const LayoutOptions& options,
                       LogConsole* console, std::unique_ptr<GdsDatabase>& database) {
    console->Write(std::string("--- Handling \"Load GDS\" command ---"));
    LayoutLoad load;
    try {
        load = LoadLayout(path, console, options);
    } catch (const std::bad_alloc&) {
        return LayoutFailure(path, outOfMemory);
    } catch (const std::exception& error) {
        return LayoutFailure(path, error.what());
    }
    if (load.error) {
        return LayoutRefusal(path, *load.error);
    }
    database = std::move(load.database);
    return {};
}

Outcome PrepareProcess(const std::filesystem::path& path, const GdsDatabase& database,
                       const ColorTable& colors, const ViewChoice& view, LogConsole* console,
                       std::unique_ptr<ProcessModel>& model) {
    console->Write(std::string("--- Handling \"Run\" command ---"));
    PreparedRun run;
    try {
        run = PrepareRun(path, database, colors, console, view);
    } catch (const std::bad_alloc&) {
        return ProcessFailure(path, outOfMemory);
    } catch (const std::exception& error) {
        return ProcessFailure(path, error.what());
    }
    if (run.model == nullptr) {
        return run.fileOpened ? ProcessFailure(path, run.errors, run.faults)
                              : ProcessFailure(path, WhyNotOpened(path));
    }
    model = std::move(run.model);
    return {};
}

}  // namespace zelmo
