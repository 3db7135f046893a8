#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/row_bands.h"
#include "gds/cell_places.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"
#include "gds/gzip_bytes.h"
#include "gds/layout_contents.h"
#include "gds/layout_problems.h"
#include "gds/layout_repairs.h"
#include "gds/library_reading.h"
#include "gds/placed_boxes.h"
#include "gds/polygon_selection.h"
#include "gds/text_places.h"
#include "tests/fuzz/target.h"
#include "tests/gds/database_text.h"

// Any bytes as a layout: read in one go and in pieces, sized, and its cells extracted. Compressed
// ones have a target of their own.

namespace zelmo {

namespace {

void Extract(const GdsCell& cell, std::int64_t low, std::int64_t high, std::int64_t minSize) {
    ExtractionScope scope;
    scope.window.x0 = scope.window.y0 = low;
    scope.window.x1 = scope.window.y1 = high;
    scope.window.minSize = minSize;
    scope.limits.polygons = 1000;
    scope.limits.patience = 100;  // so that small inputs reach what is meant for large ones
    scope.limits.fruitlessTests = 20000;
    const auto refusal = CollectCellPolygons(scope, {&cell, GdsTransform()});
    Require(scope.output.size() <= scope.limits.polygons, "an extraction keeps to its limit");
    Require((refusal == ExtractionRefusal::TooManyPolygons) ==
                (scope.output.size() == scope.limits.polygons),
            "a refusal tells its reason");
}

/// Whether no cell is scaled, so that no coordinate leaves 64 bits on any way.
bool KeepsScale(const GdsDatabase& database) {
    const auto isPlain = [](const auto& reference) { return reference.mag == 1.0; };
    return std::all_of(database.cells.begin(), database.cells.end(), [&](const GdsCell& cell) {
        return std::all_of(cell.srefs.begin(), cell.srefs.end(), isPlain) &&
               std::all_of(cell.arefs.begin(), cell.arefs.end(), isPlain);
    });
}

/// The first places of a cell in another.
void FindSomePlaces(const GdsDatabase& database, std::size_t within, std::size_t cell) {
    constexpr std::size_t most = 20;
    if (within == cell) {
        return;
    }
    const CellPlaces places =
        FindPlaces(database, within, cell, most, {.turns = 300, .steps = 5000, .waiting = 500});
    const bool isWhole = places.hasShapes && !places.beyondLimits;
    Require(places.boxes.size() <= most, "places keep to their limit");
    Require(!isWhole || !places.count.isExact ||
                places.boxes.size() == std::min<std::uint64_t>(most, places.count.exact),
            "there are as many boxes as places");
}

/// What cells hold, counted once each and layer by layer.
void CountContents(const GdsDatabase& database) {
    const ContentLimits limits{.turns = 300, .turnedElements = 20000};
    const std::vector<CellContents> cells = CountCells(database, limits);
    Require(cells.size() == database.cells.size(), "every cell has contents");
    FindLayoutProblems(database);
    const bool keepsScale = KeepsScale(database);
    for (std::size_t i = 0; i < std::min<std::size_t>(cells.size(), 20); ++i) {
        if (cells[i].isEndless) {
            continue;
        }
        FlatCount shapes;
        GdsRect box;
        const CellLayers layers = CountLayers(database, i, limits);
        for (const LayerContents& layer : layers.layers) {
            shapes = shapes + layer.shapes;
            if (!IsNothing(layer.box)) {
                MergeRect(box, layer.box);
            }
        }
        Require(shapes.isExact == cells[i].shapes.isExact && shapes.exact == cells[i].shapes.exact,
                "layers hold the shapes of the cell");
        const bool haveBoxes = layers.haveBoxes && cells[i].hasBox;
        Require(!keepsScale || !haveBoxes || box == cells[i].box,
                "layers lie in the box of the cell");
        Require(FindTexts(database, i, 50).size() <= 50, "texts keep to their limit");
        for (std::size_t j = 0; j < std::min<std::size_t>(cells.size(), 5); ++j) {
            FindSomePlaces(database, i, j);
        }
    }
}

std::optional<LayoutError> ReadAndExtract(const MemoryFile& file, std::size_t size,
                                          LayoutOptions options) {
    GdsDatabase database;
    CountingConsole console;
    options.texts = true;
    auto error = ReadGdsFile(database, file.Path(), &console, options);
    if (error) {
        const std::string_view reason = LayoutErrorReason(error->kind);
        Require(!reason.empty() && error->byte <= size, "an error lies in the file");
        return error;
    }
    for (const GdsCell& cell : database.cells) {
        Extract(cell, -1000000000000, 1000000000000, 0);
        Extract(cell, -500, 20000, 10);
    }
    CountContents(database);
    return std::nullopt;
}

/// What is taken is taken with repairs, too; what is repaired has neither of two faults.
void ReadWithAndWithoutRepairs(const MemoryFile& file, std::size_t size) {
    const auto error = ReadAndExtract(file, size, {});
    const auto stillWrong = ReadAndExtract(file, size, {.repair = true});
    Require(error || !stillWrong, "a layout that is taken needs no repair");
    Require(!stillWrong || (stillWrong->kind != LayoutErrorKind::PathNotExpandable &&
                            stillWrong->kind != LayoutErrorKind::CellMissing),
            "what can be repaired is");
}

std::string TextOf(const std::optional<LayoutError>& error) {
    return error ? fmt::format("error {} at {} record {:x} in {}", LayoutErrorCode(error->kind),
                               error->byte, error->record.value_or(0), error->cell)
                 : std::string();
}

/// What reading gives, in words.
std::string TextOfReading(const MemoryFile& file, std::int32_t threads, const PieceSizes& sizes,
                          const LayoutOptions& options) {
    SetRowThreads(threads);
    GdsDatabase database;
    CountingConsole console;
    std::string outcome;
    try {
        const LibraryReading reading = ReadLibrary(database, file.Path(), &console, sizes, options);
        outcome = TextOf(database) + TextOf(reading.error) +
                  (reading.flatSeen ? " with flat ones" : "") +
                  fmt::format("{}", fmt::join(RepairLines(database.repairs), ", "));
    } catch (const std::out_of_range& error) {
        outcome = error.what();
    }
    SetRowThreads(0);
    return outcome + " " + std::to_string(console.lines);
}

void ReadInPieces(const MemoryFile& file, std::size_t size) {
    const PieceSizes sizes{std::max<std::size_t>(64, size / 3),
                           std::max<std::size_t>(16, size / 9)};
    for (const bool repair : {false, true}) {
        const LayoutOptions options{.repair = repair};
        Require(TextOfReading(file, 2, sizes, options) == TextOfReading(file, 1, {}, options),
                "a library is the same in pieces");
    }
}

}  // namespace

}  // namespace zelmo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size >= zelmo::gzipMark.size() &&
        std::equal(zelmo::gzipMark.begin(), zelmo::gzipMark.end(), data)) {
        return 0;
    }
    const zelmo::MemoryFile file(data, size);
    zelmo::ReadInPieces(file, size);
    try {
        zelmo::ReadWithAndWithoutRepairs(file, size);
    } catch (const std::out_of_range& error) {
        zelmo::Require(std::string_view(error.what()) == "invalid vector subscript",
                       "nothing but an element without points throws");
    }
    return 0;
}
