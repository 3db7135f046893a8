#include "gds/gds_reader.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cmath>

#include "base/log_console.h"
#include "gds/cell_bounds.h"
#include "gds/cell_references.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/library_reading.h"
#include "gds/placement.h"

namespace zelmo {

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t cellMissing = 29;
constexpr std::int32_t cellInItself = 30;

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

}  // namespace

// The bytes of the mantissa, added up from the first to the last, are exact but for the last sum,
// which rounds to nearest as the conversion of the whole number does.
double GdsReal8ToDouble(const std::uint8_t* bytes) {
    std::uint64_t digits = 0;
    for (int i = 1; i < 8; ++i) {
        digits = digits << 8 | bytes[i];
    }
    const auto mantissa = static_cast<double>(digits);
    const int head = bytes[0];
    return head < 128 ? std::ldexp(mantissa, 4 * (head - 64) - 56)
                      : -std::ldexp(mantissa, 4 * (head - 192) - 56);
}

std::int32_t ReadGdsFile(GdsDatabase& database, const std::filesystem::path& path,
                         LogConsole* console) {
    const LibraryReading reading = ReadLibrary(database, path, console);
    if (reading.refusal != success) {
        return reading.refusal;
    }
    if (reading.flatSeen) {
        ComputeBoundaryBounds(database, console);
    }
    if (!BindReferences(database)) {
        return cellMissing;
    }
    if (HasReferenceCircle(database)) {
        return cellInItself;
    }
    ListCells(database, console);
    return success;
}

}  // namespace zelmo
