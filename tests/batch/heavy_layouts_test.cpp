#include <chrono>
#include <string>

#include "examples/gds_writer.h"
#include "tests/batch/batch_fixture.h"

// Layouts that hold more work than could be done, had it all to be done.

namespace zelmo {
namespace {

std::string Numbered(const char* name, int number) {
    return std::string(name).append(std::to_string(number));
}

class HeavyLayoutsTest : public BatchTest {
protected:
    /// Runs the process on the layout; fails if that takes long.
    Ended RunWithin(std::chrono::seconds limit, const GdsWriter& writer) const {
        WriteLayout(writer.Bytes());
        const auto start = std::chrono::steady_clock::now();
        Ended ended = Run({"--no-pictures", "square.gds", "flow.txt"});
        EXPECT_LT(std::chrono::steady_clock::now() - start, limit);
        return ended;
    }

    static void ExpectPolygons(const Ended& ended, const std::string& count) {
        EXPECT_EQ(ended.status, 0) << ended.errors;
        EXPECT_NE(ended.output.find("\nExtracted " + count + " polygons "), std::string::npos)
            << ended.output.substr(0, 2000);
    }
};

TEST_F(HeavyLayoutsTest, InstancesByTheBillionOutsideTheWindow) {
    // Arrays of arrays: 10^27 squares, of which the window meets the first few. The window with its
    // margin ends at 11 um, and squares stand 5 um apart.
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("SQUARE");
    writer.Rectangle(1, 0, 0, 1000, 1000);
    writer.EndCell();
    writer.BeginCell("ROWS");
    writer.Array("SQUARE", 30000, 30000, {0, 0}, {150000000, 0}, {0, 150000000});
    writer.EndCell();
    writer.BeginCell("BLOCKS");
    writer.Array("ROWS", 10, 10, {0, 0}, {1500000000, 0}, {0, 1500000000});
    writer.EndCell();
    writer.BeginCell("FAR");
    writer.Array("BLOCKS", 30000, 30000, {20000, 20000}, {2000000000, 0}, {0, 2000000000});
    writer.EndCell();
    writer.BeginCell("TOP");
    writer.Reference("ROWS", {0, 0});
    writer.Array("ROWS", 30000, 30000, {1000000, 0}, {2000000000, 0}, {1000000, 2000000000});
    writer.Reference("FAR", {20000, 20000}, {.degrees = 0.0});
    writer.EndCell();
    writer.EndLibrary();
    ExpectPolygons(RunWithin(std::chrono::seconds(60), writer), "9");
}

TEST_F(HeavyLayoutsTest, AChainOfAHundredThousandReferences) {
    constexpr int levels = 100000;
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Reference("C0", {0, 0});
    writer.EndCell();
    for (int level = 0; level < levels; ++level) {
        writer.BeginCell(Numbered("C", level));
        if (level + 1 < levels) {
            writer.Reference(Numbered("C", level + 1), {0, 0});
        } else {
            writer.Rectangle(1, 1000, 1000, 5000, 5000);
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    ExpectPolygons(RunWithin(std::chrono::seconds(60), writer), "1");
}

TEST_F(HeavyLayoutsTest, AMillionReferencesToTenThousandCells) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; cell < 10000; ++cell) {
        writer.BeginCell(Numbered("CELL", cell));
        writer.Rectangle(1, 0, 0, 1000, 1000);
        writer.EndCell();
    }
    writer.BeginCell("TOP");
    for (int reference = 0; reference < 1000000; ++reference) {
        writer.Reference(Numbered("CELL", reference % 10000), {reference * 2000, 0});
    }
    writer.EndCell();
    writer.EndLibrary();
    // At 0, 2, 4 and so on up to 10 um.
    ExpectPolygons(RunWithin(std::chrono::seconds(60), writer), "6");
}

TEST_F(HeavyLayoutsTest, TwinsOfTwinsBeyondAllNumbers) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Reference("C0", {0, 0});
    writer.EndCell();
    for (int level = 0; level < 500; ++level) {
        writer.BeginCell(Numbered("C", level));
        for (int twin = 0; twin < 2 && level < 499; ++twin) {
            writer.Reference(Numbered("C", level + 1), {4933, 10758},
                             {.reflect = true, .mag = 2.0, .degrees = 270.0});
        }
        writer.Rectangle(1, 100000, 100000, 100900, 100700);
        writer.EndCell();
    }
    writer.EndLibrary();
    ExpectPolygons(RunWithin(std::chrono::seconds(60), writer), "0");
}

}  // namespace
}  // namespace zelmo
