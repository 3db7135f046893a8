#include "process_run/load_layout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/text.h"
#include "examples/gds_writer.h"
#include "gds/gds_database.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

std::string LoadingLine(const std::filesystem::path& path) {
    return "Loading GDS database " + Utf8FromWide(PathText(path)) + " and calculating cell sizes";
}

TEST(LoadLayout, EndsItsReportWithTheTime) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 0, 0, 100, 100);
    writer.EndCell();
    writer.EndLibrary();
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "a.gds";
    writer.Save(path);
    RecordingConsole console;
    const LayoutLoad load = LoadLayout(path, &console);
    ASSERT_NE(load.database, nullptr);
    EXPECT_EQ(load.database->cells.size(), 1u);
    ASSERT_GE(console.lines.size(), 3u);
    EXPECT_EQ(console.lines.front(), LoadingLine(path));
    EXPECT_EQ(console.lines[console.lines.size() - 2], "");
    EXPECT_TRUE(console.lines.back().starts_with("GDS database finished loading in "));
}

TEST(LoadLayout, AFailureIsALineAndNoDatabase) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "absent.gds";
    RecordingConsole console;
    EXPECT_EQ(LoadLayout(path, &console).database, nullptr);
    EXPECT_EQ(console.lines,
              (Lines{LoadingLine(path), "Loading GDS database failed with error 2"}));
}

TEST(LoadLayout, RepairsWhereItIsAskedTo) {
    GdsWriter writer;
    writer.BeginCell("TOP");
    writer.Path(1, {{0, 0}, {0, 0}, {100, 0}}, 10);
    writer.Reference("NOWHERE", {0, 0});
    writer.EndCell();
    const TempFolder folder;
    const std::filesystem::path path = folder.Write("a.gds", writer.Bytes());
    RecordingConsole console;
    EXPECT_EQ(LoadLayout(path, &console).database, nullptr);
    EXPECT_EQ(console.lines.back(), "Loading GDS database failed with error 3");
    const LayoutLoad load = LoadLayout(path, &console, {.repair = true});
    ASSERT_NE(load.database, nullptr);
    EXPECT_EQ(load.database->repairs.repeatedPoints, 1u);
    EXPECT_EQ(load.database->repairs.missingCells, 1u);
}

}  // namespace
}  // namespace zelmo
