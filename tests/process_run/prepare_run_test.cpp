#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/text.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
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
    square.points = database.store.points.Keep(
        {{1000, 2000}, {2234, 2000}, {2234, 3234}, {1000, 3234}, {1000, 2000}});
    square.bounds = {1000, 2000, 2234, 3234};
    GdsCell cell;
    cell.name = "TOP";
    cell.bounds = square.bounds;
    cell.boundsValid = true;
    cell.boundaries = database.store.boundaries.Keep({square});
    database.cells.push_back(std::move(cell));
    return database;
}

/// Counts the GL objects of height markers; can be out of memory when they are made.
class CountingGraphics : public LayerGraphics {
public:
    void CreateLayerObjects(Layer&) override { ++layers; }
    void UploadLayerMesh(const Layer&, std::span<const MeshVertex>,
                         std::span<const std::uint32_t>) override {}
    void DestroyLayerObjects(Layer&) noexcept override { --layers; }
    void CreateMarkerObjects(HeightMarkers& markers) override {
        if (outOfMemory) {
            throw std::bad_alloc();
        }
        ++markersMade;
        lastRowCount = markers.rowCount;
    }
    void UploadMarkers(const HeightMarkers&) override {}
    void DestroyMarkerObjects(HeightMarkers&) noexcept override { ++markersDestroyed; }

    bool outOfMemory = false;
    int layers = 0;
    int markersMade = 0;
    int markersDestroyed = 0;
    std::uint32_t lastRowCount = 0;
};

class PreparationTest : public testing::Test {
protected:
    std::unique_ptr<ProcessModel> PreparePath(const std::filesystem::path& path) {
        console.lines.clear();
        pathText = Utf8FromWide(PathText(path));
        return std::make_unique<ProcessModel>(path, database, &console, graphics);
    }

    std::unique_ptr<ProcessModel> Prepare(const std::string& text) {
        return PreparePath(folder.Write("process.txt", text));
    }

    std::unique_ptr<ProcessModel> PrepareWindow(const std::string& columns,
                                                const std::string& window) {
        return Prepare("settings -version 4 -N " + columns + "\nlocation " + window +
                       "\ngds -cell TOP\n");
    }

    /// Expects a runtime error and returns its text.
    std::string FailureOf(const std::string& text) {
        return FailureOfPath(folder.Write("process.txt", text));
    }

    std::string FailureOfPath(const std::filesystem::path& path) {
        try {
            PreparePath(path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no failure";
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
    LayerGraphics* graphics = nullptr;
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
    EXPECT_EQ(model->graphics, nullptr);
    ASSERT_EQ(model->rawPolygons.size(), 1u);
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
    EXPECT_EQ(model->heightMarkers.cover, model->stack.coverMap.data());
    EXPECT_EQ(model->heightMarkers.rowCount, 5u);
    EXPECT_EQ(model->heightMarkers.vertices.size(), 50u);
}

TEST_F(PreparationTest, ThePathIsShownInAnyScript) {
    const std::filesystem::path path = folder.Path() / PathFromText(L"\u00fcber \u5de5.txt");
    std::ofstream(path, std::ios::binary) << goodFile;
    PreparePath(path);
    EXPECT_EQ(console.lines.at(0), SuccessLine());
    EXPECT_NE(pathText.find("\xc3\xbc"), std::string::npos);
}

TEST_F(PreparationTest, AFileThatCannotBeOpenedEndsInTwoLines) {
    EXPECT_EQ(FailureOfPath(folder.Path() / "nowhere.txt"), "Reading process file failed");
    EXPECT_EQ(console.lines, (Lines{"Failed to open process file: " + pathText, FailureLine()}));
    EXPECT_EQ(FailureOfPath(folder.Path()), "Reading process file failed");
    EXPECT_EQ(console.lines, (Lines{"Failed to open process file: " + pathText, FailureLine()}));
}

TEST_F(PreparationTest, AFaultyFileEndsWithItsErrorsAndOneLine) {
    EXPECT_EQ(FailureOf(goodFile + "foo\nstrip -name s\n"), "Reading process file failed");
    EXPECT_EQ(console.lines,
              (Lines{"Error in line 5: Unknown command",
                     "Error in line 6: strip command not allowed if no prior photo process",
                     FailureLine()}));
}

TEST_F(PreparationTest, AnUnknownCellEndsAfterTheExtractionsLines) {
    EXPECT_EQ(FailureOf("settings -version 4 -N 200\nlocation " + goodWindow + "\ngds -cell top\n"),
              "");
    EXPECT_EQ(console.lines, (Lines{SuccessLine(), "", "Extracting polygons",
                                    "ERROR: Cell name top was not found in the GDS database"}));
}

TEST_F(PreparationTest, ExhaustedMemoryPassesThroughWithoutALine) {
    CountingGraphics counting;
    counting.outOfMemory = true;
    graphics = &counting;
    EXPECT_THROW(Prepare(goodFile), std::bad_alloc);
    EXPECT_EQ(console.lines.size(), 9u);
    EXPECT_EQ(console.lines.back(), "GDS cell: TOP");
    EXPECT_EQ(counting.markersMade, 0);
}

TEST_F(PreparationTest, AFailureLeavesThePreviousModelAsItWas) {
    auto model = Prepare(goodFile);
    const CoverCell* const cover = model->stack.coverMap.data();
    EXPECT_THROW(model = Prepare("rubbish\n"), std::runtime_error);
    EXPECT_THROW(model = PrepareWindow("200", "-x 0 -y 0 -dx 1e39 -dy 1"), std::runtime_error);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->stack.coverMap.data(), cover);
    EXPECT_EQ(model->grid.rows, 101);
    EXPECT_EQ(model->steps.size(), 2u);
    EXPECT_EQ(model->polygons.size(), 1u);
}

TEST_F(PreparationTest, GraphicsAreUsedForTheHeightMarkersAlone) {
    CountingGraphics counting;
    graphics = &counting;
    auto model = Prepare(goodFile);
    EXPECT_EQ(model->graphics, &counting);
    EXPECT_EQ(counting.markersMade, 1);
    EXPECT_EQ(counting.lastRowCount, 5u);
    EXPECT_EQ(counting.layers, 0);
    EXPECT_EQ(counting.markersDestroyed, 0);
    model.reset();
    EXPECT_EQ(counting.markersDestroyed, 1);
}

TEST_F(PreparationTest, AFailureMakesNoGraphicsObjects) {
    CountingGraphics counting;
    graphics = &counting;
    FailureOf("rubbish\n");
    FailureOf("settings -version 4 -N 200\nlocation " + goodWindow + "\ngds -cell top\n");
    EXPECT_EQ(counting.markersMade, 0);
    EXPECT_EQ(counting.markersDestroyed, 0);
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

TEST_F(PreparationTest, AWindowFlatterThanATenthHasNoHeightMarkers) {
    // 19 row intervals against 199 column intervals
    auto model = PrepareWindow("200", "-x 1 -y 2 -dx 199 -dy 19");
    EXPECT_EQ(model->grid.rows, 20);
    EXPECT_EQ(model->heightMarkers.rowCount, 0u);
    EXPECT_EQ(model->heightMarkers.vertexCount, 0u);
    EXPECT_TRUE(model->heightMarkers.vertices.empty());
    EXPECT_EQ(model->heightMarkers.columns, 200);
    EXPECT_EQ(model->heightMarkers.spacing, model->grid.spacing);
    EXPECT_EQ(model->heightMarkers.marginX, model->grid.marginX);
    EXPECT_EQ(model->heightMarkers.cover, model->stack.coverMap.data());
    model = PrepareWindow("201", "-x 1 -y 2 -dx 200 -dy 20");
    EXPECT_EQ(model->grid.rows, 21);
    EXPECT_EQ(model->heightMarkers.rowCount, 1u);
    EXPECT_EQ(model->heightMarkers.vertices.size(), 10u);
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
    const auto failure = [&](const std::string& window) {
        return FailureOf("settings -version 4 -N 200\nlocation " + window + "\ngds -cell TOP\n");
    };
    const std::string thrown = "The location window gives no usable grid";
    // an infinite width
    EXPECT_EQ(failure("-x 0 -y 0.5 -dx 1e39 -dy 1"), thrown);
    EXPECT_EQ(console.lines,
              (Lines{SuccessLine(), refusal("inf um x 1 um at (0 um, 0.5 um) with 200 columns")}));
    // a spacing too small to be told from 0
    EXPECT_EQ(failure("-x 0 -y 0 -dx 1e-44 -dy 1e-44"), thrown);
    EXPECT_EQ(console.lines.size(), 2u);
    // a spacing of one unit in the last place, which makes more rows than columns
    EXPECT_EQ(failure("-x 0 -y 0 -dx 3e-43 -dy 3e-43"), thrown);
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
