#include "tests/state_records/state_records.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "examples/gds_writer.h"
#include "tests/state_records/fnv_hash.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// Slanted and straight shapes through every kind of reference, with all three path ends.
std::vector<std::uint8_t> MakeLayout() {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("CONTACT");
    writer.Boundary(2, {{-90, -90}, {90, -110}, {120, 70}, {10, 130}, {-100, 80}});
    writer.EndCell();
    writer.BeginCell("FINGER");
    writer.Path(1, {{0, 0}, {700, 0}, {1100, 400}, {1100, 900}}, 160, 0);
    writer.Path(3, {{0, 300}, {500, 300}, {500, 1200}}, 140, 1);
    writer.Path(3, {{100, 600}, {400, 900}}, 120, 2);
    writer.Reference("CONTACT", {250, 20}, {.degrees = 30.0});
    writer.EndCell();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 200, 200, 1900, 700);
    writer.Reference("FINGER", {900, 900});
    writer.Reference("FINGER", {3600, 700}, {.reflect = true, .mag = 1.25, .degrees = 75.5});
    writer.Array("CONTACT", 4, 2, {500, 1700}, {2600, 1800}, {400, 2900},
                 {.mag = 1.5, .degrees = 12.0});
    writer.EndCell();
    writer.EndLibrary();
    return writer.Bytes();
}

constexpr std::string_view process = R"(settings -version 4 -N 200 -angle 33 -heights -legend
location -x 0.1 -y 0.05 -dx 3.9 -dy 2.7
gds -cell TOP
deposition -name Well -type silicon -thickness 700 -sc 0.9 -color 150 60 60 100
photo -name TRENCH -mask_id 1 -type 1 -res 0.2 -thickness 800 -taper 78
etch -name TRENCH -targets silicon -depth 450 -iso 0.3
strip -name TRENCH
coating -name Fill -type oxide -thickness 600 -dop 0.6 -color 190 215 255 100 -alpha 0.5
photo -name CONTACT -mask_id 2 -type 0 -res 0.05 -thickness 900 -taper 60
etch -name CONTACT -targets oxide -depth 950 -iso 0.1
strip -name CONTACT
deposition -name Metal -type metal -thickness 260 -sc 0.4 -color 230 200 60 100
photo -name METAL -mask_id 3 -type 1 -res 0.0 -thickness 1500 -taper 89
etch -name METAL -targets metal -depth 700 -iso 1.0
strip -name METAL
release -name FREE -targets oxide
stop
)";

std::vector<std::string> RecordsOfTheProcess(std::vector<std::string>& consoleLines) {
    const TempFolder folder;
    RecordingConsole console;
    std::vector<std::string> records;
    TellStateRecords(folder.Write("layout.gds", MakeLayout()), folder.Write("process.txt", process),
                     {}, &console, [&](std::string_view line) { records.emplace_back(line); });
    consoleLines = console.lines;
    return records;
}

TEST(StateRecords, EveryBuildGivesTheSameBits) {
    std::vector<std::string> consoleLines;
    const std::vector<std::string> records = RecordsOfTheProcess(consoleLines);
    // A blank line and the step's name stand before the state of each of the 14 steps.
    ASSERT_GT(records.size(), 4u + 14u * 5u);
    EXPECT_EQ(records[0], "grid 200 x 139 spacing 0x1.814fecp-6 polygons 17");
    EXPECT_EQ(records[5], "step 1 Substrate");
    EXPECT_EQ(consoleLines.back(), "Executing FREE release etch ...");
    FnvHash hash;
    std::string state;
    for (const std::string& line : records) {
        hash.Add(line + "\n");
        if (line.rfind("  top ", 0) == 0) {
            state = line;
        }
    }
    // One number for all lines, and the last state in words for whoever looks for a difference
    EXPECT_EQ(hash.Text(), "588f0f3524cd7bb4");
    EXPECT_EQ(state,
              "  top 0x1.ca3d72p-1 aspect 0x1.0c3822bf7653ep+1 picture-height 916 layers 2 "
              "cover aeffa6ed77c50d06 transform 098238a55a283670 markers 5bc343872643c45a");
}

TEST(StateRecords, ALayoutThatDoesNotLoadIsRefused) {
    const TempFolder folder;
    RecordingConsole console;
    EXPECT_THROW(TellStateRecords(folder.Path() / "none.gds", folder.Write("p.txt", process), {},
                                  &console, [](std::string_view) {}),
                 std::runtime_error);
}

}  // namespace
}  // namespace zelmo
