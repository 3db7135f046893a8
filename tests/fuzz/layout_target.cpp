#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/library_reading.h"
#include "gds/polygon_selection.h"
#include "tests/fuzz/target.h"
#include "tests/gds/database_text.h"

// Any bytes as a layout: read in one go and in pieces, sized, and its cells extracted.

namespace zelmo {

namespace {

void Extract(const GdsCell& cell, std::int64_t low, std::int64_t high, std::int64_t minSize) {
    ExtractionScope scope;
    scope.x0 = scope.y0 = low;
    scope.x1 = scope.y1 = high;
    scope.minSize = minSize;
    scope.limit = 1000;
    scope.patience = 100;  // so that small inputs reach what is meant for large ones
    scope.effort = 200000;
    const std::uint32_t result = CollectCellPolygons(scope, {&cell, GdsTransform()});
    Require(scope.output.size() <= scope.limit, "an extraction keeps to its limit");
    Require((result == 2) == (scope.output.size() == scope.limit), "2 tells of the limit alone");
}

void ReadAndExtract(const MemoryFile& file) {
    GdsDatabase database;
    CountingConsole console;
    const std::int32_t code = ReadGdsFile(database, file.Path(), &console);
    Require(code >= 0 && code <= 30, "codes are known");
    if (code != 0) {
        return;
    }
    for (const GdsCell& cell : database.cells) {
        Extract(cell, -1000000000000, 1000000000000, 0);
        Extract(cell, -500, 20000, 10);
    }
}

/// What reading gives, in words.
std::string TextOfReading(const MemoryFile& file, std::int32_t threads, const PieceSizes& sizes) {
    SetRowThreads(threads);
    GdsDatabase database;
    CountingConsole console;
    std::string outcome;
    try {
        const LibraryReading reading = ReadLibrary(database, file.Path(), &console, sizes);
        outcome = TextOf(database) + std::to_string(reading.refusal) +
                  (reading.flatSeen ? " with flat ones" : "");
    } catch (const std::out_of_range& error) {
        outcome = error.what();
    }
    SetRowThreads(0);
    return outcome + " " + std::to_string(console.lines);
}

void ReadInPieces(const MemoryFile& file, std::size_t size) {
    const PieceSizes sizes{std::max<std::size_t>(64, size / 3),
                           std::max<std::size_t>(16, size / 9)};
    Require(TextOfReading(file, 2, sizes) == TextOfReading(file, 1, {}),
            "a library is the same in pieces");
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const zelmo::MemoryFile file(data, size);
    zelmo::ReadInPieces(file, size);
    try {
        zelmo::ReadAndExtract(file);
    } catch (const std::out_of_range& error) {
        zelmo::Require(std::string_view(error.what()) == "invalid vector subscript",
                       "nothing but an element without points throws");
    }
    return 0;
}
