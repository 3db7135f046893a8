#include "batch/inputs.h"

#include <fmt/format.h>

#include <exception>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include "base/log_console.h"
#include "base/text.h"
#include "batch/consoles.h"
#include "batch/exit_status.h"
#include "gds/gds_database.h"
#include "gds/layout_error.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/prepare_run.h"
#include "process_run/run_report.h"

namespace zelmo {

namespace {

constexpr const char* outOfMemory = "there is not enough memory";

/// What keeps a file from being opened, as far as looking at it from outside can tell.
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

[[noreturn]] void RefuseLayout(const std::filesystem::path& path, const std::string& reason) {
    throw BatchFailure{ExitStatus::Layout, fmt::format("the layout {} did not load: {}",
                                                       Utf8FromWide(PathText(path)), reason)};
}

[[noreturn]] void RefuseProcess(const std::filesystem::path& path, const std::string& reason) {
    throw BatchFailure{ExitStatus::Process, fmt::format("the process file {} cannot be run: {}",
                                                        Utf8FromWide(PathText(path)), reason)};
}

/// The first error, and how many more there are.
std::string FirstOf(const std::vector<std::string>& errors) {
    return errors.size() < 2 ? errors.at(0)
                             : fmt::format("{} (and {} more)", errors[0], errors.size() - 1);
}

std::string LayoutReason(const std::filesystem::path& path, LayoutErrorKind kind) {
    const std::string reason =
        kind == LayoutErrorKind::FileUnreadable ? WhyNotOpened(path) : LayoutErrorReason(kind);
    return fmt::format("{} (error {})", reason, LayoutErrorCode(kind));
}

}  // namespace

ColorTable LoadColors(const std::filesystem::path& path) {
    ColorTable colors;
    if (!LoadColorTable(colors, path)) {
        throw BatchFailure{
            ExitStatus::Other,
            fmt::format("Could not load color file or color file contains errors: {}",
                        Utf8FromWide(PathText(path)))};
    }
    return colors;
}

std::unique_ptr<GdsDatabase> LoadLayoutFile(const std::filesystem::path& path,
                                            LogConsole* console) {
    console->Write(std::string("--- Handling \"Load GDS\" command ---"));
    LayoutLoad load;
    try {
        load = LoadLayout(path, console);
    } catch (const std::bad_alloc&) {
        RefuseLayout(path, outOfMemory);
    } catch (const std::exception& error) {
        RefuseLayout(path, error.what());
    }
    if (load.error) {
        RefuseLayout(path, LayoutReason(path, load.error->kind));
    }
    return std::move(load.database);
}

std::unique_ptr<ProcessModel> PrepareProcess(const std::filesystem::path& path,
                                             const GdsDatabase& database, const ColorTable& colors,
                                             LogConsole* console) {
    console->Write(std::string("--- Handling \"Run\" command ---"));
    PreparedRun run;
    try {
        run = PrepareRun(path, database, colors, console);
    } catch (const std::bad_alloc&) {
        RefuseProcess(path, outOfMemory);
    } catch (const std::exception& error) {
        RefuseProcess(path, error.what());
    }
    if (run.model == nullptr) {
        RefuseProcess(path, run.fileOpened ? FirstOf(run.errors) : WhyNotOpened(path));
    }
    return std::move(run.model);
}

}  // namespace zelmo
