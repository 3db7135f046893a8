#include "gds/gds_reader.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <utility>

#include "base/log_console.h"
#include "gds/cell_bounds.h"
#include "gds/cell_references.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/library_reading.h"
#include "gds/missing_cells.h"
#include "gds/placement.h"
#include "gds/reference_location.h"

namespace zelmo {

namespace {

/// Sizes the cells in the order of the file and lists them.
void ListCells(GdsDatabase& database, LogConsole* console) {
    console->Write(L"");
    console->Write("CELLS IN DATABASE (database units):");
    for (GdsCell& cell : database.cells) {
        ComputeCellBounds(cell, GdsTransform());
        console->Write(fmt::format(FMT_COMPILE("--> \"{:s}\" with size dx = {:d} by dy = {:d}"),
                                   NameText(cell.name),
                                   SaturatingSubtract(cell.bounds.xmax, cell.bounds.xmin),
                                   SaturatingSubtract(cell.bounds.ymax, cell.bounds.ymin)));
    }
}

LayoutError ReferenceError(LayoutErrorKind kind, const GdsDatabase& database,
                           const ReferencePosition& position, const std::filesystem::path& path,
                           const LayoutOptions& options) {
    LayoutError error{kind, 0, {}, std::string(NameText(database.cells[position.cell].name))};
    if (const std::optional<RecordLocation> record = LocateReference(path, position, options)) {
        error.byte = record->byte;
        error.record = record->code;
    }
    return error;
}

}  // namespace

std::optional<LayoutError> ReadGdsFile(GdsDatabase& database, const std::filesystem::path& path,
                                       LogConsole* console, const LayoutOptions& options) {
    LibraryReading reading = ReadLibrary(database, path, console, {}, options);
    if (reading.error) {
        return std::move(reading.error);
    }
    if (reading.flatSeen) {
        ComputeBoundaryBounds(database, console);
    }
    auto missing = BindReferences(database);
    if (missing && options.repair) {
        SkipMissingCells(database, database.repairs);
        missing = BindReferences(database);
    }
    if (missing) {
        return ReferenceError(LayoutErrorKind::CellMissing, database, *missing, path, options);
    }
    if (const auto closing = FindReferenceCircle(database)) {
        return ReferenceError(LayoutErrorKind::CellInItself, database, *closing, path, options);
    }
    ListCells(database, console);
    return std::nullopt;
}

}  // namespace zelmo
