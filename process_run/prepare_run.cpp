#include "process_run/prepare_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/log_console.h"
#include "base/text.h"
#include "model/grid/grid.h"
#include "model/grid/neighbour_table.h"
#include "model/process.h"
#include "model/process_model.h"
#include "process_file/reader.h"
#include "process_file/settings_limits.h"
#include "process_run/fitted_window.h"
#include "process_run/mask_polygons.h"

namespace zelmo {

namespace {

/// Reports an error and keeps its line.
void Refuse(PreparedRun& run, const std::string& line, LogConsole* console) {
    console->Write(line);
    run.errors.push_back(Utf8FromWide(WidenBytes(line)));
    run.faults.push_back({0, run.errors.back()});
}

/// Takes settings and steps from a process file. False if it was refused.
bool TakeProcessFile(PreparedRun& run, const std::filesystem::path& path, ProcessFile file,
                     LogConsole* console) {
    run.fileOpened = file.opened;
    if (!file.opened) {
        const std::wstring line = L"Failed to open process file: " + PathText(path);
        console->Write(line);
        run.errors.push_back(Utf8FromWide(line));
        run.faults.push_back({0, run.errors.back()});
    }
    for (const ProcessFileError& error : file.errors) {
        Refuse(run, ErrorLine(error), console);
        run.faults.back() = {error.line, Utf8FromWide(WidenBytes(error.text))};
    }
    if (!run.errors.empty()) {
        console->Write(L"Opening process file " + PathText(path) +
                       L" failed with error(s) given above");
        return false;
    }
    console->Write(L"Successfully read process file \"" + PathText(path) + L"\"");
    run.model->settings = std::move(file.settings);
    run.model->steps = std::move(file.steps);
    return true;
}

void SetWindow(ProcessSettings& settings, const GivenWindow& window) {
    settings.windowX = window.x;
    settings.windowY = window.y;
    settings.windowWidth = window.width;
    // The model relies on a window that is never higher than wide.
    settings.windowHeight = std::min(window.height, window.width);
}

/// Puts what is chosen in place of what the process file says. False if no window fits.
bool TakeView(PreparedRun& run, const ViewChoice& view, const GdsDatabase& gds,
              LogConsole* console) {
    ProcessSettings& settings = run.model->settings;
    settings.cellName = view.cell.value_or(settings.cellName);
    settings.gridColumns = view.gridColumns.value_or(settings.gridColumns);
    settings.cameraAngle = UsedCameraAngle(view.cameraAngle.value_or(settings.cameraAngle));
    if (const auto* const given = std::get_if<GivenWindow>(&view.window)) {
        SetWindow(settings, *given);
    }
    if (const auto* const fitted = std::get_if<FittedWindow>(&view.window)) {
        const WindowFit fit = FitWindow(gds, settings.cellName, run.model->steps, *fitted);
        if (!fit.failure.empty()) {
            Refuse(run, fit.failure, console);
            return false;
        }
        SetWindow(settings, fit.window);
        console->Write(fmt::format("Fitted location -x {} -y {} -dx {} -dy {}", settings.windowX,
                                   settings.windowY, settings.windowWidth, settings.windowHeight));
    }
    return true;
}

/// Windows at the ends of single precision can leave a grid that no array can be made for.
bool IsUsableGrid(const Grid& grid) {
    return std::isfinite(grid.spacing) && grid.spacing > 0.0f && grid.rows >= 1 &&
           grid.rows <= grid.columns;
}

bool TakeGrid(PreparedRun& run, LogConsole* console) {
    const ProcessSettings& settings = run.model->settings;
    SizeGrid(run.model->grid, settings);
    if (IsUsableGrid(run.model->grid)) {
        return true;
    }
    Refuse(run,
           fmt::format("ERROR: The location window gives no usable grid: {} um x {} um at "
                       "({} um, {} um) with {} columns",
                       settings.windowWidth, settings.windowHeight, settings.windowX,
                       settings.windowY, settings.gridColumns),
           console);
    return false;
}

/// How far outside the grid there can be polygons that adjusted masks bring into it.
float ReachOfMasks(const std::vector<ProcessStep>& steps) {
    float reach = 0.0f;
    for (const ProcessStep& step : steps) {
        reach = std::max(reach, ReachOf(step.adjustment));
    }
    return reach;
}

bool TakePolygons(PreparedRun& run, const GdsDatabase& gds, LogConsole* console) {
    ProcessModel& model = *run.model;
    MaskExtraction masks = ExtractMaskPolygons(gds, model.settings.cellName, model.grid, console,
                                               ReachOfMasks(model.steps));
    if (!masks.failure.empty()) {
        run.errors.push_back(Utf8FromWide(WidenBytes(masks.failure)));
        run.faults.push_back({0, run.errors.back()});
        return false;
    }
    model.polygons = std::move(masks.polygons);
    model.skippedPolygons = masks.skipped;
    return true;
}

void WriteGridReport(const ProcessModel& model, LogConsole* console) {
    const ProcessSettings& settings = model.settings;
    console->Write(std::string());
    console->Write(fmt::format("GDS cell {} at ({:.3f} um, {:.3f} um)", settings.cellName,
                               settings.windowX, settings.windowY));
    console->Write(fmt::format("Grid size: {} x {}", model.grid.columns, model.grid.rows));
    console->Write(fmt::format("Grid spacing: {:.3f} um", model.grid.spacing));
    console->Write(fmt::format("GDS cell: {}", settings.cellName));
}

}  // namespace

PreparedRun PrepareRun(const std::filesystem::path& path, const GdsDatabase& gds,
                       const ColorTable& colors, LogConsole* console, const ViewChoice& view) {
    return PrepareRun(path,
                      ReadProcessFile(path, colors, view.variables ? &*view.variables : nullptr),
                      gds, console, view);
}

PreparedRun PrepareRun(const std::filesystem::path& name, ProcessFile file, const GdsDatabase& gds,
                       LogConsole* console, const ViewChoice& view) {
    PreparedRun run;
    run.model = std::make_unique<ProcessModel>();
    if (!TakeProcessFile(run, name, std::move(file), console) ||
        !TakeView(run, view, gds, console) || !TakeGrid(run, console) ||
        !TakePolygons(run, gds, console)) {
        run.model.reset();
        return run;
    }
    WriteGridReport(*run.model, console);
    Grid& grid = run.model->grid;
    BuildNeighbourTable(grid.neighbours, grid.rows, grid.columns, grid.spacing);
    BuildDistanceIndex(grid);
    run.model->stack.coverMap.assign(grid.CellCount(), CoverCell{});
    return run;
}

}  // namespace zelmo
