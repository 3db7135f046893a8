#include <fmt/format.h>

#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "base/log_console.h"
#include "base/text.h"
#include "gds/gds_database.h"
#include "gds/polygon_extraction.h"
#include "model/grid/grid_geometry.h"
#include "model/grid/neighbour_table.h"
#include "model/height_markers.h"
#include "model/process_model.h"
#include "process_file/reader.h"

namespace zelmo {

namespace {

void ReadOrThrow(ProcessModel& model, const std::filesystem::path& path, LogConsole* console) {
    if (ReadProcessFile(model, path, console) != 0) {
        console->Write(L"Opening process file " + PathText(path) +
                       L" failed with error(s) given above");
        throw std::runtime_error("Reading process file failed");
    }
    console->Write(L"Successfully read process file \"" + PathText(path) + L"\"");
}

/// Windows at the ends of single precision can leave a grid that no array can be made for.
bool IsUsableGrid(const ProcessModel& model) {
    return std::isfinite(model.gridSpacing) && model.gridSpacing > 0.0f && model.gridRows >= 1 &&
           model.gridRows <= model.gridColumns;
}

void SizeGridOrThrow(ProcessModel& model, LogConsole* console) {
    SizeGrid(model);
    if (!IsUsableGrid(model)) {
        console->Write(
            fmt::format("ERROR: The location window gives no usable grid: {} um x {} um at "
                        "({} um, {} um) with {} columns",
                        model.windowWidth, model.windowHeight, model.windowX, model.windowY,
                        model.gridColumns));
        throw std::runtime_error("The location window gives no usable grid");
    }
}

void WriteGridReport(const ProcessModel& model, LogConsole* console) {
    console->Write(std::string());
    console->Write(fmt::format("GDS cell {} at ({:.3f} um, {:.3f} um)", model.cellName,
                               model.windowX, model.windowY));
    console->Write(fmt::format("Grid size: {} x {}", model.gridColumns, model.gridRows));
    console->Write(fmt::format("Grid spacing: {:.3f} um", model.gridSpacing));
    console->Write(fmt::format("GDS cell: {}", model.cellName));
}

}  // namespace

// A delegating constructor: what was built by the time of a failure is torn down by the destructor.
ProcessModel::ProcessModel(const std::filesystem::path& path, const GdsDatabase& gds,
                           LogConsole* console, LayerGraphics* layerGraphics)
    : ProcessModel() {
    graphics = layerGraphics;
    ReadOrThrow(*this, path, console);
    SizeGridOrThrow(*this, console);
    ExtractPolygons(*this, console, gds);
    WriteGridReport(*this, console);
    BuildNeighbourTable(neighbours, gridRows, gridColumns, gridSpacing);
    BuildDistanceIndex(*this);
    coverMap.assign(CellCount(), CoverCell{});
    InitHeightMarkers(*this);
}

}  // namespace zelmo
