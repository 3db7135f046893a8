#include "process_run/prepare_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "tests/support/limited_memory.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

/// A library of one cell TOP with one square of 1234 database units on layer 12, its corner at
/// (1000, 2000).
GdsDatabase MakeDatabase() {
    GdsDatabase database;
    GdsBoundary square;
    square.layer = 12;
    square.points = database.store.points.Keep(std::vector<GdsPoint>{
        {1000, 2000}, {2234, 2000}, {2234, 3234}, {1000, 3234}, {1000, 2000}});
    square.bounds = {1000, 2000, 2234, 3234};
    GdsCell cell;
    cell.name = "TOP";
    cell.bounds = square.bounds;
    cell.boundsValid = true;
    cell.boundaries = database.store.boundaries.Keep(std::vector{square});
    database.cells.push_back(std::move(cell));
    return database;
}

class PreparationTest : public testing::Test {
protected:
    PreparedRun PreparePath(const std::filesystem::path& path) {
        console.lines.clear();
        pathText = Utf8FromWide(PathText(path));
        return PrepareRun(path, database, colors, &console);
    }

    /// The model of a file that is expected to be good.
    std::unique_ptr<ProcessModel> Prepare(const std::string& text) {
        PreparedRun run = PreparePath(folder.Write("process.txt", text));
        EXPECT_TRUE(run.fileOpened);
        EXPECT_EQ(run.errors, Lines{});
        EXPECT_NE(run.model, nullptr);
        return std::move(run.model);
    }

    std::unique_ptr<ProcessModel> PrepareWindow(const std::string& columns,
                                                const std::string& window) {
        return Prepare("settings -version 4 -N " + columns + "\nlocation " + window +
                       "\ngds -cell TOP\n");
    }

    /// The errors of a file that is expected to leave no model.
    Lines ErrorsOf(const std::string& text) {
        const PreparedRun run = PreparePath(folder.Write("process.txt", text));
        EXPECT_TRUE(run.fileOpened);
        EXPECT_EQ(run.model, nullptr);
        return run.errors;
    }

    std::string SuccessLine() const {
        return "Successfully read process file \"" + pathText + "\"";
    }
    std::string FailureLine() const {
        return "Opening process file " + pathText + " failed with error(s) given above";
    }

    TempFolder folder;
    RecordingConsole console;
    GdsDatabase database = MakeDatabase();
    ColorTable colors;
    std::string pathText;
};

const std::string goodWindow = "-x 1 -y 2 -dx 4 -dy 2";
const std::string goodFile = "settings -version 4 -N 200\nlocation " + goodWindow +
                             "\ngds -cell TOP\n"
                             "deposition -name a -type t -thickness 1 -color 1 2 3 4\n";

TEST_F(PreparationTest, ReportsInItsOrder) {
    const auto model = Prepare(goodFile);
    EXPECT_EQ(console.lines, (Lines{SuccessLine(), "", "Extracting polygons",
                                    "Extracted 1 polygons with smallest size 1.23 um", "",
                                    "GDS cell TOP at (1.000 um, 2.000 um)", "Grid size: 200 x 101",
                                    "Grid spacing: 0.024 um", "GDS cell: TOP"}));
}

TEST_F(PreparationTest, TakesPolygonsThatAMaskBringsInFromOutside) {
    const auto polygonsWith = [&](const std::string& argument) {
        return Prepare(
                   "settings -version 4 -N 200\nlocation -x 10 -y 2 -dx 4 -dy 2\n"
                   "gds -cell TOP\n"
                   "photo -name A -mask_id 12 -type 1 -res 0 -thickness 1\nstrip -name S\n"
                   "photo -name B -mask_id 12 -type 1 -res 0 -thickness 1 " +
                   argument + "\n")
            ->polygons.size();
    };
    EXPECT_EQ(polygonsWith(""), 0u);
    EXPECT_EQ(polygonsWith("-shift 1 1"), 0u);
    EXPECT_EQ(polygonsWith("-shift 8 0"), 1u);
    EXPECT_EQ(polygonsWith("-shift 0 -8"), 1u);
    EXPECT_EQ(polygonsWith("-bias 2.6"), 1u);
    EXPECT_EQ(polygonsWith("-bias -2.6"), 1u);
}

TEST_F(PreparationTest, LeavesAModelThatIsReadyToRun) {
    const auto model = Prepare(goodFile);
    EXPECT_EQ(model->grid.columns, 200);
    EXPECT_EQ(model->grid.rows, 101);
    EXPECT_EQ(model->grid.originX, 1.0f - 4.0f * 0.1f);
    EXPECT_EQ(model->grid.originY, 2.0f - 2.0f * 0.1f);
    EXPECT_EQ(model->grid.width, 4.0f * 1.2f);
    EXPECT_EQ(model->grid.spacing, 4.0f * 1.2f / 199.0f);
    EXPECT_EQ(model->grid.height, 100.0f * model->grid.spacing);
    EXPECT_EQ(model->grid.marginX, 1.0f - model->grid.originX);
    EXPECT_EQ(model->grid.marginY, 2.0f - model->grid.originY);
    EXPECT_EQ(model->steps.size(), 2u);
    EXPECT_TRUE(model->stack.layers.empty());
    ASSERT_EQ(model->polygons.size(), 1u);
    EXPECT_EQ(model->polygons[0].layer, 12u);

    ASSERT_EQ(model->grid.neighbours.count, 399 * 201);
    ASSERT_EQ(model->grid.neighbours.entries.size(), 399u * 201u);
    EXPECT_EQ(model->grid.neighbours.entries[0].distance, 0.0f);
    EXPECT_EQ(model->grid.neighbours.entries[1].dy, -1);
    EXPECT_EQ(model->grid.neighbours.entries[1].distance, model->grid.spacing);
    ASSERT_EQ(model->grid.distanceIndex.size(), 400u);
    EXPECT_EQ(model->grid.distanceIndex[0], 0);
    EXPECT_EQ(model->grid.distanceIndex[1], 8);
    EXPECT_EQ(model->grid.distanceIndex[399], 0);

    ASSERT_EQ(model->stack.coverMap.size(), 200u * 101u);
    for (const CoverCell& cell : model->stack.coverMap) {
        ASSERT_EQ(cell.layerId, 0);
        ASSERT_EQ(cell.height, 0.0f);
    }
}

TEST_F(PreparationTest, ThePathIsShownInAnyScript) {
    const std::filesystem::path path = folder.Path() / PathFromText(L"\u00fcber \u5de5.txt");
    std::ofstream(path, std::ios::binary) << goodFile;
    PreparePath(path);
    EXPECT_EQ(console.lines.at(0), SuccessLine());
    EXPECT_NE(pathText.find("\xc3\xbc"), std::string::npos);
}

TEST_F(PreparationTest, AFileThatCannotBeOpenedEndsInTwoLines) {
    for (const std::filesystem::path& path : {folder.Path() / "nowhere.txt", folder.Path()}) {
        const PreparedRun run = PreparePath(path);
        EXPECT_EQ(run.model, nullptr);
        EXPECT_FALSE(run.fileOpened);
        EXPECT_EQ(run.errors, Lines{"Failed to open process file: " + pathText});
        EXPECT_EQ(console.lines,
                  (Lines{"Failed to open process file: " + pathText, FailureLine()}));
    }
}

TEST_F(PreparationTest, AFaultyFileEndsWithItsErrorsAndOneLine) {
    const Lines errors{"Error in line 5: Unknown command",
                       "Error in line 6: strip command not allowed if no prior photo process"};
    EXPECT_EQ(ErrorsOf(goodFile + "foo\nstrip -name s\n"), errors);
    EXPECT_EQ(console.lines, (Lines{errors[0], errors[1], FailureLine()}));
}

TEST_F(PreparationTest, AnUnknownCellEndsAfterTheExtractionsLines) {
    const std::string error = "ERROR: Cell name top was not found in the GDS database";
    EXPECT_EQ(ErrorsOf("settings -version 4 -N 200\nlocation " + goodWindow + "\ngds -cell top\n"),
              Lines{error});
    EXPECT_EQ(console.lines, (Lines{SuccessLine(), "", "Extracting polygons", error}));
}

TEST_F(PreparationTest, ExhaustedMemoryPassesThroughWithoutALine) {
    const std::filesystem::path path = folder.Write("process.txt", goodFile);
    Prepare(goodFile);
    const Lines allLines = console.lines;
    std::int64_t failures = 0;
    for (;; ++failures) {
        LimitAllocations(failures);
        try {
            PreparePath(path);
            break;
        } catch (const std::bad_alloc&) {
            LimitAllocations(-1);
            ASSERT_LE(console.lines.size(), allLines.size());
            EXPECT_TRUE(std::equal(console.lines.begin(), console.lines.end(), allLines.begin()));
        }
    }
    LimitAllocations(-1);
    EXPECT_EQ(console.lines, allLines);
    EXPECT_GT(failures, 20);
}

TEST_F(PreparationTest, ASquareWindowHasAsManyRowsAsColumns) {
    for (const char* const size : {"4", "0.3", "1234.5", "7.7e-3", "1e30"}) {
        const auto model =
            PrepareWindow("201", std::string("-x 1 -y 2 -dx ") + size + " -dy " + size);
        EXPECT_EQ(model->grid.rows, 201) << size;
        EXPECT_EQ(model->grid.height, 200.0f * model->grid.spacing) << size;
    }
}

TEST_F(PreparationTest, AVeryFlatWindowHasOneRow) {
    const auto model = PrepareWindow("200", "-x 1 -y 2 -dx 100 -dy 0.01");
    EXPECT_EQ(model->grid.rows, 1);
    EXPECT_EQ(model->grid.height, 0.0f);
    EXPECT_EQ(model->stack.coverMap.size(), 200u);
    EXPECT_EQ(model->grid.neighbours.count, 399);
}

TEST_F(PreparationTest, RowsAreRoundedToTheNearestWithHalvesUp) {
    const auto model = PrepareWindow("1000", "-x 0 -y 0 -dx 100 -dy 50");
    EXPECT_EQ(model->grid.spacing, 100.0f * 1.2f / 999.0f);
    EXPECT_EQ(model->grid.rows, 501);
    EXPECT_EQ(model->grid.height, 500.0f * model->grid.spacing);
    EXPECT_EQ(console.lines.at(console.lines.size() - 3), "Grid size: 1000 x 501");
    EXPECT_EQ(console.lines.at(console.lines.size() - 2), "Grid spacing: 0.120 um");
}

TEST_F(PreparationTest, AWindowBeyondSinglePrecisionIsRefusedBeforeTheExtraction) {
    const auto refusal = [](const std::string& numbers) {
        return "ERROR: The location window gives no usable grid: " + numbers;
    };
    const auto errors = [&](const std::string& window) {
        return ErrorsOf("settings -version 4 -N 200\nlocation " + window + "\ngds -cell TOP\n");
    };
    // an infinite width
    const std::string infinite = refusal("inf um x 1 um at (0 um, 0.5 um) with 200 columns");
    EXPECT_EQ(errors("-x 0 -y 0.5 -dx 1e39 -dy 1"), Lines{infinite});
    EXPECT_EQ(console.lines, (Lines{SuccessLine(), infinite}));
    // a spacing too small to be told from 0
    EXPECT_EQ(errors("-x 0 -y 0 -dx 1e-44 -dy 1e-44").size(), 1u);
    EXPECT_EQ(console.lines.size(), 2u);
    // a spacing of one unit in the last place, which makes more rows than columns
    EXPECT_EQ(errors("-x 0 -y 0 -dx 3e-43 -dy 3e-43").size(), 1u);
    EXPECT_EQ(console.lines.size(), 2u);
    EXPECT_EQ(console.lines.at(0), SuccessLine());
}

TEST_F(PreparationTest, WindowsNearTheEndsOfSinglePrecisionAreStillPrepared) {
    for (const char* const window :
         {"-x 1e39 -y -1e39 -dx 4 -dy 2", "-x -3e38 -y 3e38 -dx 2.8e38 -dy 2.8e38",
          "-x 1e30 -y 0 -dx 4 -dy 4", "-x 0 -y 0 -dx 1e-37 -dy 1e-37", "-x 0 -y 0 -dx 4 -dy 1e-45",
          "-x 1e-45 -y 1e-45 -dx 1e-40 -dy 1e-40"}) {
        const auto model = PrepareWindow("200", window);
        EXPECT_EQ(model->stack.coverMap.size(), model->grid.CellCount()) << window;
        EXPECT_EQ(console.lines.back(), "GDS cell: TOP") << window;
    }
}

}  // namespace
}  // namespace zelmo
