#include "gds/gds_reader.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cmath>

#include "gds/cell_bounds.h"
#include "gds/cell_references.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/placement.h"
#include "gds/record_handlers.h"
#include "gds/stream_records.h"
#include "shell/log_console.h"

namespace zelmo {

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t cannotOpen = 2;
constexpr std::int32_t recordTooShort = 5;
constexpr std::int32_t cellMissing = 29;
constexpr std::int32_t cellInItself = 30;

/// Reads records up to the end of the library or of the file. A structure without its end is lost.
std::int32_t ReadRecords(LibraryState& state, const std::filesystem::path& path) {
    StreamRecords records(path);
    StreamRecord record;
    while (!state.endSeen) {
        switch (records.Next(record)) {
            case RecordStatus::Read:
                if (const std::int32_t refusal = HandleRecord(state, record)) {
                    return refusal;
                }
                break;
            case RecordStatus::EndOfFile:
                return success;
            case RecordStatus::BadLength:
                return recordTooShort;
            case RecordStatus::Unreadable:
                return cannotOpen;
        }
    }
    return success;
}

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
    {
        LibraryState state{database, console};
        if (const std::int32_t refusal = ReadRecords(state, path)) {
            return refusal;
        }
        if (state.flatSeen) {
            ComputeBoundaryBounds(database, console);
        }
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
