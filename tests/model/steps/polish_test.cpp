#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "model/cover_map.h"
#include "model/execute_step.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/support/recording_console.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

ProcessStep PolishTo(std::vector<std::string> stop, float level = 0.0f) {
    ProcessStep step;
    step.kind = StepKind::Polish;
    step.polishesToStop = true;
    step.targets = std::move(stop);
    step.level = level;
    return step;
}

ProcessStep PolishToLevel(float level) {
    ProcessStep step;
    step.kind = StepKind::Polish;
    step.level = level;
    return step;
}

/// A grid of 12 by 9 with a substrate of 10 micrometres and what is appended: films on one another,
/// 9 rows of 12 cells.
class Polish : public testing::Test {
protected:
    void SetUp() override {
        SetUpGrid(model, 12, 9, 1.0f);
        Append(10.0f, "_SUB_");
        model.stack.substrateThickness = 10.0f;
    }

    Layer& Append(float thickness, const std::string& material) {
        Layer& layer = AppendFlatLayer(model, surface, thickness, material);
        layer.changed = false;
        surface += thickness;
        UpdateCoverMap(model.stack, model.grid);
        return layer;
    }

    /// A film with thickness in a rectangle only.
    Layer& AppendIsland(float thickness, const std::string& material, std::int32_t firstCol,
                        std::int32_t firstRow, std::int32_t cols, std::int32_t rows) {
        Layer& layer = AppendFlatLayer(model, surface, 0.0f, material);
        layer.changed = false;
        for (std::int32_t row = firstRow; row < firstRow + rows; ++row) {
            for (std::int32_t col = firstCol; col < firstCol + cols; ++col) {
                layer.top[CellAt(model, col, row)] = surface + thickness;
            }
        }
        UpdateCoverMap(model.stack, model.grid);
        return layer;
    }

    /// A film that reaches from below any plane to above it, so that its upper side shows the
    /// plane.
    Layer& AppendGauge() { return AppendFlatLayer(model, 10.25f, 30.0f, "gauge"); }

    static void ExpectFlat(std::span<const float> heights, float height) {
        for (const float here : heights) {
            ASSERT_EQ(here, height);
        }
    }

    /// Expects that the polish finds no stop and changes nothing.
    void ExpectNoStop(const ProcessStep& step) {
        const auto before = BitsOf(model.stack);
        EXPECT_FALSE(ExecutePolish(model.stack, model.grid, step));
        EXPECT_EQ(BitsOf(model.stack), before);
    }

    ProcessModel model;
    float surface = 0.0f;
};

TEST_F(Polish, StopsAtTheUpperSideOfTheStop) {
    Append(2.0f, "pad");
    AppendIsland(1.0f, "nit", 2, 2, 5, 4);
    Layer& oxide = Append(4.0f, "ox");
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(oxide.top, 13.0f);
    ExpectFlat(oxide.bottom, 12.0f);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 3);
    EXPECT_EQ(model.stack.coverMap[0].height, 13.0f);
}

TEST_F(Polish, ASpikeOfOneCellDoesNotHoldItUp) {
    Layer& nitride = Append(1.0f, "nit");
    nitride.top[CellAt(model, 5, 4)] = 14.0f;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(nitride.top, 11.0f);
}

TEST_F(Polish, ARidgeOfTwoCellsDoesNotHoldItUpAndOneOfThreeDoes) {
    Append(1.0f, "nit");
    AppendIsland(2.0f, "nit", 4, 0, 2, 9);
    AppendIsland(3.0f, "nit", 0, 4, 12, 2);
    Layer& gauge = AppendGauge();
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(gauge.top, 11.0f);

    AppendIsland(2.0f, "nit", 4, 3, 3, 3);
    gauge.top.assign(model.grid.CellCount(), 40.0f);
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(gauge.top, 13.0f);
}

TEST_F(Polish, TheLowestCellOfASquareIsItsLevel) {
    Append(1.0f, "ox");
    Layer& stop = AppendIsland(2.0f, "nit", 3, 3, 3, 3);
    stop.top[CellAt(model, 5, 5)] = 12.25f;
    Layer& gauge = AppendGauge();
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(gauge.top, 12.25f);
}

TEST_F(Polish, TheHighestSquareCountsWhereverItLies) {
    for (const auto& [col, row] : {std::pair{0, 0}, {9, 6}, {9, 0}, {0, 6}, {4, 3}}) {
        ProcessModel corner;
        SetUpGrid(corner, 12, 9, 1.0f);
        AppendFlatLayer(corner, 0.0f, 1.0f, "_SUB_");
        Layer& stop = AppendFlatLayer(corner, 1.0f, 1.0f, "nit");
        for (std::int32_t y = row; y < row + 3; ++y) {
            for (std::int32_t x = col; x < col + 3; ++x) {
                stop.top[CellAt(corner, x, y)] = 3.0f;
            }
        }
        Layer& oxide = AppendFlatLayer(corner, 2.0f, 2.0f, "ox");
        ASSERT_TRUE(ExecutePolish(corner.stack, corner.grid, PolishTo({"nit"})));
        ExpectFlat(oxide.top, 3.0f);
    }
}

TEST_F(Polish, LayersOfAllItsTypesMakeTheStopTogether) {
    Append(1.0f, "ox");
    AppendIsland(1.0f, "nit", 3, 3, 3, 2);
    AppendIsland(2.0f, "poly", 3, 5, 3, 1);
    Layer& gauge = AppendGauge();
    ExpectNoStop(PolishTo({"nit"}));
    ExpectNoStop(PolishTo({"poly"}));
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit", "poly"})));
    ExpectFlat(gauge.top, 12.0f);
}

TEST_F(Polish, TheHighestOfSeveralStopLayersInACellCounts) {
    Append(1.0f, "nit");
    Append(1.0f, "ox");
    Append(0.5f, "nit");
    Layer& gauge = AppendGauge();
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    ExpectFlat(gauge.top, 12.5f);
}

TEST_F(Polish, OverLowersThePlaneAndAboveRaisesIt) {
    Layer& nitride = Append(1.0f, "nit");
    Layer& oxide = Append(4.0f, "ox");
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 0.75f)));
    ExpectFlat(oxide.top, 11.75f);
    ExpectFlat(nitride.top, 11.0f);
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, -0.25f)));
    EXPECT_EQ(model.stack.layers[2], nullptr);
    ExpectFlat(nitride.top, 10.75f);
}

TEST_F(Polish, ALevelIsMeasuredFromTheSubstrate) {
    Append(1.0f, "nit");
    Layer& oxide = Append(4.0f, "ox");
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishToLevel(2.5f)));
    ExpectFlat(oxide.top, 12.5f);
    ExpectFlat(oxide.bottom, 11.0f);
}

TEST_F(Polish, NeverGoesBelowTheSubstrate) {
    for (const ProcessStep& step :
         {PolishTo({"nit"}, -50.0f), PolishTo({"nit"}, -infinity), PolishToLevel(0.0f)}) {
        ProcessModel fresh;
        SetUpGrid(fresh, 12, 9, 1.0f);
        AppendFlatLayer(fresh, 0.0f, 10.0f, "_SUB_");
        fresh.stack.substrateThickness = 10.0f;
        Layer& nitride = AppendFlatLayer(fresh, 10.0f, 1.0f, "nit");
        nitride.bottom[0] = 9.0f;
        AppendFlatLayer(fresh, 11.0f, 4.0f, "ox");
        ASSERT_TRUE(ExecutePolish(fresh.stack, fresh.grid, step));
        ExpectFlat(nitride.top, 10.0f);
        EXPECT_EQ(nitride.bottom[0], 9.0f);
        EXPECT_EQ(nitride.bottom[1], 10.0f);
        EXPECT_EQ(fresh.stack.layers[2], nullptr);
        ExpectFlat(fresh.stack.layers[0]->top, 10.0f);
        EXPECT_EQ(fresh.stack.coverMap[CellAt(fresh, 5, 5)].layerId, 0);
        EXPECT_EQ(fresh.stack.coverMap[CellAt(fresh, 5, 5)].height, 10.0f);
    }
}

TEST_F(Polish, TheSubstrateStays) {
    Layer& substrate = *model.stack.layers[0];
    substrate.top[7] = 13.0f;
    Append(4.0f, "ox");
    const auto before = BitsOf(substrate.top);
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishToLevel(1.0f)));
    EXPECT_EQ(BitsOf(substrate.top), before);
    EXPECT_FALSE(substrate.changed);
}

TEST_F(Polish, ResistIsPolishedToo) {
    Append(1.0f, "nit");
    Layer& resist = AppendIsland(3.0f, "PR", 2, 2, 4, 4);
    resist.isPhotoresist = true;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    EXPECT_EQ(resist.top[CellAt(model, 3, 3)], 12.0f);
    EXPECT_EQ(resist.bottom[CellAt(model, 3, 3)], 11.0f);
    EXPECT_TRUE(resist.changed);
}

TEST_F(Polish, LevelsAlsoWhatLiesAcrossAGap) {
    Append(1.0f, "nit");
    Layer& through = AppendFlatLayer(model, 11.5f, 2.0f, "ox");
    Layer& above = AppendFlatLayer(model, 14.0f, 1.0f, "metal");
    above.top[0] = above.bottom[0] = 11.0f;
    Layer& below = AppendFlatLayer(model, 11.25f, 0.125f, "metal");
    below.changed = false;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    ExpectFlat(through.top, 12.0f);
    ExpectFlat(through.bottom, 11.5f);
    EXPECT_EQ(above.top[1], 12.0f);
    EXPECT_EQ(above.bottom[1], 12.0f);
    EXPECT_EQ(above.top[0], 11.0f);
    ExpectFlat(below.top, 11.375f);
    ExpectFlat(below.bottom, 11.25f);
    EXPECT_FALSE(below.changed);
}

TEST_F(Polish, SurfacesWithoutThicknessComeDownAsWell) {
    // So that the next film begins on the plane beside what is left.
    Append(1.0f, "nit");
    Layer& film = AppendFlatLayer(model, 14.0f, 0.0f, "ox");
    film.bottom[CellAt(model, 5, 4)] = 11.0f;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    ExpectFlat(film.top, 12.0f);
    EXPECT_EQ(film.bottom[CellAt(model, 5, 4)], 11.0f);
    EXPECT_EQ(film.bottom[CellAt(model, 6, 4)], 12.0f);
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 6, 4)].layerId, 2);
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 6, 4)].height, 12.0f);
}

TEST_F(Polish, ALayerThatIsNowhereBelowThePlaneLeavesTheStack) {
    Append(1.0f, "nit");
    Append(1.0f, "ox");
    Layer& strange = Append(1.0f, "metal");
    strange.top[3] = nan;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    EXPECT_EQ(model.stack.layers[2], nullptr);
    ASSERT_NE(model.stack.layers[3], nullptr) << "what is no number is material";
    EXPECT_NE(strange.top[3], strange.top[3]);
    EXPECT_EQ(strange.top[4], 11.0f);
    EXPECT_EQ(model.stack.coverMap[3].layerId, 3);
}

TEST_F(Polish, WhatLiesBelowStaysToTheBit) {
    Layer& nitride = Append(1.0f, "nit");
    nitride.bottom[3] = -0.0f;
    nitride.top[3] = 1e-42f;
    nitride.top[4] = 10.9999990f;
    const auto top = BitsOf(nitride.top);
    const auto bottom = BitsOf(nitride.bottom);
    Append(1.0f, "ox");
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
    EXPECT_EQ(BitsOf(nitride.top), top);
    EXPECT_EQ(BitsOf(nitride.bottom), bottom);
    EXPECT_FALSE(nitride.changed);
}

TEST_F(Polish, AHeightThatIsNoNumberNeverHoldsItUp) {
    Append(1.0f, "ox");
    Layer& stop = AppendIsland(2.0f, "nit", 3, 3, 3, 3);
    const std::size_t middle = CellAt(model, 4, 4);
    stop.top[middle] = nan;
    ExpectNoStop(PolishTo({"nit"}));
    stop.top[middle] = 13.0f;
    stop.bottom[middle] = nan;
    ExpectNoStop(PolishTo({"nit"}));
    stop.bottom[middle] = 11.0f;
    EXPECT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"})));
}

TEST_F(Polish, AHeightThatIsNoNumberStays) {
    Append(1.0f, "nit");
    Layer& oxide = Append(4.0f, "ox");
    oxide.top[5] = nan;
    oxide.bottom[6] = nan;
    oxide.top[7] = infinity;
    oxide.bottom[8] = -infinity;
    oxide.top[9] = nan;
    oxide.bottom[9] = 14.0f;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    EXPECT_NE(oxide.top[5], oxide.top[5]);
    EXPECT_EQ(oxide.top[6], 12.0f);
    EXPECT_NE(oxide.bottom[6], oxide.bottom[6]);
    EXPECT_EQ(oxide.top[7], 12.0f);
    EXPECT_EQ(oxide.bottom[8], -infinity);
    EXPECT_NE(oxide.top[9], oxide.top[9]);
    EXPECT_EQ(oxide.bottom[9], 12.0f) << "also where the upper surface is no number";
}

TEST_F(Polish, AStopWithoutThicknessDoesNotCount) {
    Append(1.0f, "ox");
    AppendFlatLayer(model, 14.0f, 0.0f, "nit");
    ExpectNoStop(PolishTo({"nit"}));
    AppendFlatLayer(model, infinity, 0.0f, "nit");
    ExpectNoStop(PolishTo({"nit"}));
}

TEST_F(Polish, WithoutAWholeSquareNothingChanges) {
    Append(1.0f, "ox");
    Layer& stop = AppendIsland(2.0f, "nit", 3, 3, 3, 3);
    Append(5.0f, "ox");
    stop.top[CellAt(model, 3, 5)] = stop.bottom[CellAt(model, 3, 5)];
    model.stack.coverMap[2] = {77, 77.0f};
    ExpectNoStop(PolishTo({"nit"}));
    ExpectNoStop(PolishTo({"nit"}, -5.0f));
}

TEST_F(Polish, WithoutAStopLayerNothingChanges) {
    Append(1.0f, "ox");
    ExpectNoStop(PolishTo({}));
    ExpectNoStop(PolishTo({"nit"}));
    model.stack.layers[1].reset();
    ExpectNoStop(PolishTo({"ox"}));
}

TEST_F(Polish, AGridOfFewerThanThreeRowsOrColumnsHasNoSquare) {
    for (const auto& [cols, rows] : {std::pair{9, 2}, {9, 1}, {2, 2}, {1, 1}}) {
        ProcessModel narrow;
        SetUpGrid(narrow, cols, rows, 1.0f);
        AppendFlatLayer(narrow, 0.0f, 1.0f, "_SUB_");
        AppendFlatLayer(narrow, 1.0f, 1.0f, "nit");
        EXPECT_FALSE(ExecutePolish(narrow.stack, narrow.grid, PolishTo({"nit"}, -0.5f)));
        EXPECT_TRUE(ExecutePolish(narrow.stack, narrow.grid, PolishToLevel(1.5f)));
        EXPECT_EQ(narrow.stack.layers[1]->top[0], 1.5f);
    }
}

TEST_F(Polish, NeitherTheSubstrateNorResistIsAStopByItsName) {
    Layer& resist = Append(1.0f, "PR");
    resist.isPhotoresist = true;
    ExpectNoStop(PolishTo({"_SUB_", "PR"}));
    // A material may have such a name.
    Append(1.0f, "PR");
    EXPECT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"_SUB_", "PR"}, -0.5f)));
    EXPECT_EQ(resist.top[0], 11.0f);
    EXPECT_EQ(model.stack.layers[2]->top[0], 11.5f);
}

TEST_F(Polish, MarksTheLayersThatItChanges) {
    Layer& nitride = Append(1.0f, "nit");
    Layer& oxide = Append(4.0f, "ox");
    const auto nitrideVersion = nitride.version;
    const auto oxideVersion = oxide.version;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    EXPECT_FALSE(nitride.changed);
    EXPECT_EQ(nitride.version, nitrideVersion);
    EXPECT_TRUE(oxide.changed);
    EXPECT_NE(oxide.version, oxideVersion);
    oxide.changed = false;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, PolishTo({"nit"}, 1.0f)));
    EXPECT_FALSE(oxide.changed) << "the second time there was nothing above the plane";
}

TEST_F(Polish, WhatIsLevelledAwayLeavesTheStack) {
    Append(1.0f, "nit");
    Append(4.0f, "ox");
    RecordingConsole console;
    ProcessStep step = PolishTo({"nit"});
    step.description = "CMP1 polishing";
    ExecuteStep(model, step, &console);
    EXPECT_EQ(model.stack.layers[2], nullptr);
    EXPECT_EQ(model.stack.layerCount, 2);
    EXPECT_EQ(console.lines, (std::vector<std::string>{"Executing CMP1 polishing ..."}));
}

TEST_F(Polish, ANoteSaysWhereTheStopHoldsNoSquare) {
    Append(1.0f, "ox");
    RecordingConsole console;
    ProcessStep step = PolishTo({"nit"});
    step.description = "CMP1 polishing";
    ExecuteStep(model, step, &console);
    EXPECT_EQ(console.lines,
              (std::vector<std::string>{"Executing CMP1 polishing ...",
                                        "Note: CMP1 polishing changed nothing: its stop holds no "
                                        "square of 3 by 3 grid cells."}));
    ExecuteStep(model, step, nullptr);
}

}  // namespace
}  // namespace zelmo
