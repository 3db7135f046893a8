#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/polygon_extraction.h"
#include "model/grid/grid.h"
#include "process_file/reader.h"
#include "process_run/mask_polygons.h"
#include "tests/fuzz/made_run.h"
#include "tests/fuzz/target.h"
#include "tests/state_records/state_records.h"

// A valid layout and a process for it, run to its end with meshes, cameras and markers: once with
// the widest lanes on two threads, and once with narrow lanes on one. Both have to give the same.

namespace zelmo {

namespace {

/// Whether there is a run, and one of milliseconds: the limit of polygons is far above that.
bool IsSmall(const MemoryFile& layout, const MemoryFile& process) {
    CountingConsole console;
    GdsDatabase database;
    Require(!ReadGdsFile(database, layout.Path(), &console), "a made layout loads");
    const ProcessFile file = ReadProcessFile(process.Path(), {});
    if (!file.errors.empty()) {
        return false;  // a few of the smallest numbers are taken for zero
    }
    Grid grid;
    SizeGrid(grid, file.settings);
    float reach = 0.0f;
    for (const ProcessStep& step : file.steps) {
        reach = std::max(reach, ReachOf(step.adjustment));
    }
    const ExtractionWindow window = MaskWindow(grid, reach, database.micronsPerUnit);
    ExtractionLimits limits;
    limits.polygons = 2000;
    limits.fruitlessTests = 50000;
    return !ExtractPolygons(database, "TOP", window, limits).refusal;
}

/// All lines of the run; the last one of a run that could not be prepared tells so.
std::string Records(const MemoryFile& layout, const MemoryFile& process) {
    std::string records;
    CountingConsole console;
    try {
        TellStateRecords(layout.Path(), process.Path(), {}, &console,
                         [&](std::string_view line) { records.append(line).push_back('\n'); });
    } catch (const std::runtime_error& error) {
        records.append(error.what());
    }
    return records;
}

void Run(FuzzedDataProvider& bytes) {
    const std::string process = MakeProcess(bytes);
    const std::vector<std::uint8_t> layout = MakeLayout(bytes);
    const MemoryFile processFile(process);
    const MemoryFile layoutFile(layout.data(), layout.size());
    if (!IsSmall(layoutFile, processFile)) {
        return;
    }
    AllowWideLanes(true);
    SetRowThreads(2);
    const std::string fast = Records(layoutFile, processFile);
    AllowWideLanes(false);
    SetRowThreads(1);
    Require(fast == Records(layoutFile, processFile), "lanes and threads change nothing");
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    zelmo::Run(bytes);
    return 0;
}
