// Whatever the file holds, it is told of or refused.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "examples/layouts.h"
#include "layout_tool/cell_facts.h"
#include "layout_tool/layout_picture.h"
#include "layout_tool/layout_reading.h"
#include "layout_tool/reports.h"
#include "tests/gds/layout_file.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Reads and tells all that there is. Returns whether there was something.
bool TellAll(const Bytes& bytes, const TempFolder& folder) {
    const LayoutReading reading = ReadLayout(folder.Write("layout.gds", bytes), false);
    const ReportSubject subject{"layout.gds", {}};
    EXPECT_EQ(reading.hasCells || reading.outcome.Failed(), true);
    ProblemLines(reading);
    if (!reading.hasCells) {
        return false;
    }
    EXPECT_TRUE(LayoutText(reading, subject).ends_with("\n"));
    EXPECT_TRUE(LayoutJson(reading, subject).ends_with("}\n"));
    for (std::size_t cell = 0; cell < reading.cells.size(); ++cell) {
        if (reading.cells[cell].isEndless || reading.isAgain[cell]) {
            continue;
        }
        CellFacts facts = FindCellFacts(reading, cell, 50);
        facts.window = GivenWindow{0.0f, 0.0f, 5.0f, 4.0f};
        CutWithWindow(reading, facts);
        const std::size_t other = (cell + 1) % reading.cells.size();
        if (other != cell) {
            facts.places = PlaceFacts{
                other, FindPlaces(reading.database, cell, other, 20, {500, 20000, 5000})};
        }
        EXPECT_TRUE(CellText(reading, facts, subject).ends_with("\n"));
        EXPECT_TRUE(CellJson(reading, facts, subject).ends_with("}\n"));
        EXPECT_TRUE(DrawLayout(reading, facts, subject, {100, 2000}).svg.ends_with("</svg>\n"));
    }
    return true;
}

Bytes SmallExample() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle({66, 20}, 0, 0, 3000, 2000);
    writer.Reference("PART", {10, 20}, {true, 0.5, 30.0});
    writer.Array("PART", 3, 2, {0, 0}, {3000, 0}, {0, 2000}, {false, 1.0, 90.0});
    writer.EndCell();
    writer.BeginCell("PART");
    writer.Path(3, {{0, 0}, {100, 0}, {100, 100}}, 10, 2);
    writer.Record(record::text);
    writer.RecordU16(record::layer, {5});
    writer.RecordI32(record::xy, {7, 8});
    writer.RecordText(record::string, "pin");
    writer.Record(record::endel);
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

TEST(DamagedLayouts, EveryBeginningOfAFileIsToldOfOrRefused) {
    const TempFolder folder;
    const Bytes whole = SmallExample();
    int told = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        told +=
            TellAll(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), folder)
                ? 1
                : 0;
    }
    EXPECT_GT(told, 100);
}

TEST(DamagedLayouts, AnyChangedBytesAreToldOfOrRefused) {
    const TempFolder folder;
    const Bytes whole = SmallExample();
    std::mt19937 random(6);
    int told = 0;
    for (int round = 0; round < 2500; ++round) {
        Bytes bytes = whole;
        for (std::uint32_t i = 1 + random() % 4; i > 0; --i) {
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        }
        told += TellAll(bytes, folder) ? 1 : 0;
    }
    EXPECT_GT(told, 500);
}

TEST(DamagedLayouts, NoiseIsToldOfOrRefused) {
    const TempFolder folder;
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        Bytes bytes(random() % 300);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random() % (round % 2 == 0 ? 256 : 32));
        }
        TellAll(bytes, folder);
    }
}

}  // namespace
}  // namespace zelmo
