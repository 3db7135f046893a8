#include <stdexcept>
#include <string_view>

#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/polygon_selection.h"
#include "tests/fuzz/target.h"

// Any bytes as a layout: read, sized, and its cells extracted.

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

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        zelmo::ReadAndExtract(zelmo::MemoryFile(data, size));
    } catch (const std::out_of_range& error) {
        zelmo::Require(std::string_view(error.what()) == "invalid vector subscript",
                       "nothing but an element without points throws");
    }
    return 0;
}
