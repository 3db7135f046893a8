#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/cover_map.h"
#include "model/steps/coat_layer.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

ProcessStep PhotoStep(float thickness, float taper, bool maskDark = true, float res = 0.0f) {
    ProcessStep step;
    step.kind = StepKind::Photo;
    step.thickness = thickness;
    step.taper = taper;
    step.maskDark = maskDark;
    step.mask = {{5, std::nullopt}};
    step.res = res;
    step.material = "PR";
    step.label = "RESIST";
    step.color = {0.9f, 0.1f, 0.2f};
    step.alpha = 0.4f;
    return step;
}

/// A flat surface at 1 with a mask rectangle over the columns from `firstCol` on.
void SetUpMask(ProcessModel& model, std::int32_t cols, std::int32_t rows, float spacing,
               std::int32_t firstCol) {
    SetUpGrid(model, cols, rows, spacing);
    AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    UpdateCoverMap(model.stack, model.grid);
    MaskPolygon polygon;
    polygon.layer = 5;
    polygon.minX = (static_cast<double>(firstCol) - 0.5) * static_cast<double>(spacing);
    polygon.minY = -100.0;
    polygon.maxX = 1000.0;
    polygon.maxY = 1000.0;
    polygon.points = {{polygon.minX, polygon.minY},
                      {polygon.maxX, polygon.minY},
                      {polygon.maxX, polygon.maxY},
                      {polygon.minX, polygon.maxY}};
    model.polygons.push_back(polygon);
}

std::vector<float> ThicknessInRow(const ProcessModel& model, std::int32_t row) {
    const Layer& layer = *model.stack.layers.back();
    std::vector<float> thickness;
    for (std::int32_t col = 0; col < model.grid.columns; ++col) {
        const std::size_t cell = CellAt(model, col, row);
        thickness.push_back(layer.top[cell] - layer.bottom[cell]);
    }
    return thickness;
}

TEST(Photo, AddsAResistLayerWithTheStepsProperties) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 90.0f));
    ASSERT_EQ(model.stack.layers.size(), 2U);
    const Layer& resist = *model.stack.layers[1];
    EXPECT_TRUE(resist.isPhotoresist);
    EXPECT_EQ(resist.material, "PR");
    EXPECT_EQ(resist.label, "RESIST");
    EXPECT_EQ(resist.color, (std::array<float, 3>{0.9f, 0.1f, 0.2f}));
    EXPECT_EQ(resist.alpha, 0.4f);
    EXPECT_TRUE(resist.changed);
}

TEST(Photo, DarkMaskKeepsResistInsideThePolygons) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 90.0f, true));
    EXPECT_EQ(ThicknessInRow(model, 3), (std::vector<float>{0, 0, 0, 0, 2, 2, 2, 2}));
    // The resist covers its cells and the one beside them, at the foot of its wall.
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 2, 3)].layerId, 0);
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 3, 3)].layerId, 1);
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 3, 3)].height, 1.0f);
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 4, 3)].height, 3.0f);
}

TEST(Photo, ClearMaskKeepsResistOutsideThePolygons) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 90.0f, false));
    EXPECT_EQ(ThicknessInRow(model, 3), (std::vector<float>{2, 2, 2, 2, 0, 0, 0, 0}));
}

TEST(Photo, SlopesTheEdgeByTheTaper) {
    ProcessModel model;
    SetUpMask(model, 12, 6, 0.5f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.25f, 45.0f));
    const std::vector<float> thickness = ThicknessInRow(model, 3);
    // One micrometre up for each micrometre inward, up to the full thickness.
    const std::vector<float> expected{0, 0, 0, 0, 0.5f, 1, 1.5f, 2, 2.25f, 2.25f, 2.25f, 2.25f};
    for (std::size_t col = 0; col < expected.size(); ++col) {
        EXPECT_NEAR(thickness[col], expected[col], 1e-5f) << col;
    }
}

TEST(Photo, CutsTheFirstCellByThicknessLessPitchTimesTangent) {
    ProcessModel model;
    SetUpMask(model, 12, 6, 0.5f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 60.0f));
    const float tangent =
        static_cast<float>(std::tan(static_cast<double>(60.0f * 3.1415927f / 180.0f)));
    const std::size_t cell = CellAt(model, 4, 3);
    EXPECT_EQ(model.stack.layers[1]->top[cell], 3.0f - (2.0f - 0.5f * tangent));
}

TEST(Photo, HasTheSameSlopeToTheLastDigitEverywhere) {
    struct Slope {
        float taper;
        float tangent;
    };
    // Angles at which the order of the products or the tangent's own precision makes a difference.
    constexpr Slope slopes[] = {
        {1.25f, 0x1.65800cp-6f}, {17.75f, 0x1.47c8f4p-2f}, {30.0f, 0x1.279a74p-1f},
        {35.0f, 0x1.66819ep-1f}, {45.5f, 0x1.0481ecp+0f},  {68.0f, 0x1.3ccfaap+1f},
        {70.5f, 0x1.6976p+1f},   {84.5f, 0x1.4c5546p+3f},  {89.0f, 0x1.ca52p+5f}};
    for (const Slope& slope : slopes) {
        ProcessModel model;
        SetUpMask(model, 8, 6, 1.0f, 4);
        // On height 0, and cut by less than half: what remains of the first cell is the tangent.
        model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{});
        ExecutePhoto(model.stack, model.grid, model.polygons,
                     PhotoStep(1.25f * slope.tangent, slope.taper));
        EXPECT_EQ(model.stack.layers[1]->top[CellAt(model, 4, 3)], slope.tangent) << slope.taper;
    }
}

TEST(Photo, WithASteepTaperHasASingleStep) {
    // The thickness is less than a pitch times the tangent: no cell is cut.
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(1.5f, 60.0f));
    EXPECT_EQ(ThicknessInRow(model, 2), (std::vector<float>{0, 0, 0, 0, 1.5f, 1.5f, 1.5f, 1.5f}));
}

TEST(Photo, TakesATaperAbove89DegreesFor89) {
    const auto topsWith = [](float taper) {
        ProcessModel model;
        SetUpMask(model, 10, 6, 0.01f, 4);
        ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, taper));
        return model.stack.layers[1]->top;
    };
    EXPECT_EQ(BitsOf(topsWith(90.0f)), BitsOf(topsWith(89.0f)));
    EXPECT_EQ(BitsOf(topsWith(170.0f)), BitsOf(topsWith(89.0f)));
    EXPECT_NE(BitsOf(topsWith(88.0f)), BitsOf(topsWith(89.0f)));
    // 57.29 up for each one inward.
    EXPECT_NEAR(topsWith(90.0f)[4 + 10], 1.5729f, 1e-3f);
}

TEST(Photo, UnderAMaskThatCoversEverythingIsNotCut) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 0);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 45.0f, true));
    EXPECT_EQ(ThicknessInRow(model, 3), std::vector<float>(8, 2.0f));
    EXPECT_EQ(ThicknessInRow(model, 5), std::vector<float>(8, 2.0f));
}

TEST(Photo, InAnOpeningThatCoversEverythingHasNoResist) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 0);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 45.0f, false));
    EXPECT_EQ(ThicknessInRow(model, 3), std::vector<float>(8, 0.0f));
}

TEST(Photo, OfTaperZeroUnderAMaskThatCoversEverythingIsCutAway) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 0);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 0.0f, true));
    EXPECT_EQ(ThicknessInRow(model, 3), std::vector<float>(8, 0.0f));
}

TEST(Photo, WithoutAPolygonIsEmptyOrWhole) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ProcessStep step = PhotoStep(2.0f, 90.0f, true);
    step.mask = {{6, std::nullopt}};
    ExecutePhoto(model.stack, model.grid, model.polygons, step);
    ASSERT_EQ(model.stack.layers.size(), 2U);
    EXPECT_EQ(ThicknessInRow(model, 3), std::vector<float>(8, 0.0f));
    EXPECT_EQ(model.stack.coverMap[0].layerId, 0);

    step.maskDark = false;
    ExecutePhoto(model.stack, model.grid, model.polygons, step);
    EXPECT_EQ(ThicknessInRow(model, 3), std::vector<float>(8, 2.0f));
    EXPECT_EQ(model.stack.coverMap[0].layerId, 2);
}

/// The thickness in row 3 under a mask over the columns 4 to 7 of 16, grown and moved.
std::vector<float> AdjustedRow(const MaskAdjustment& adjustment) {
    ProcessModel model;
    SetUpGrid(model, 16, 8, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    UpdateCoverMap(model.stack, model.grid);
    MaskPolygon polygon;
    polygon.layer = 5;
    polygon.points = {{3.5, -0.5}, {8.5, -0.5}, {8.5, 7.5}, {3.5, 7.5}};
    polygon.minX = 3.5;
    polygon.minY = -0.5;
    polygon.maxX = 8.5;
    polygon.maxY = 7.5;
    model.polygons.push_back(polygon);
    ProcessStep step = PhotoStep(2.0f, 90.0f, true);
    step.adjustment = adjustment;
    ExecutePhoto(model.stack, model.grid, model.polygons, step);
    return ThicknessInRow(model, 3);
}

std::vector<float> ResistIn(std::size_t first, std::size_t end) {
    std::vector<float> thickness(16, 0.0f);
    std::fill(thickness.begin() + static_cast<std::ptrdiff_t>(first),
              thickness.begin() + static_cast<std::ptrdiff_t>(end), 2.0f);
    return thickness;
}

TEST(Photo, GrowsShrinksAndMovesItsMask) {
    EXPECT_EQ(AdjustedRow({}), ResistIn(4, 8));
    EXPECT_EQ(AdjustedRow({2.0f, 0.0f, 0.0f}), ResistIn(2, 10));
    EXPECT_EQ(AdjustedRow({-1.0f, 0.0f, 0.0f}), ResistIn(5, 7));
    EXPECT_EQ(AdjustedRow({-3.0f, 0.0f, 0.0f}), ResistIn(0, 0));
    EXPECT_EQ(AdjustedRow({0.0f, 3.0f, 0.0f}), ResistIn(7, 11));
    EXPECT_EQ(AdjustedRow({0.0f, -6.0f, 0.0f}), ResistIn(0, 2));
    EXPECT_EQ(AdjustedRow({1.0f, 2.0f, 0.0f}), ResistIn(5, 11));
    EXPECT_EQ(AdjustedRow({0.0f, 0.0f, 30.0f}), ResistIn(0, 0));
}

TEST(Photo, CoatsWithFullPlanarisation) {
    ProcessModel model;
    SetUpGrid(model, 16, 9, 0.5f);
    Layer& ground = AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        ground.top[cell] = cell % 16 < 8 ? 2.0f : 1.0f;
    }
    UpdateCoverMap(model.stack, model.grid);
    const auto coated = CreateLayer(model.grid);
    CoatLayer(model.grid, model.stack.coverMap, *coated, 1.0f, 1.0f);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(1.0f, 90.0f, false));
    EXPECT_EQ(BitsOf(model.stack.layers[1]->top), BitsOf(coated->top));
    EXPECT_EQ(BitsOf(model.stack.layers[1]->bottom), BitsOf(coated->bottom));
    EXPECT_NE(model.stack.layers[1]->top[CellAt(model, 8, 4)], 2.0f);
}

TEST(Photo, RoundsThePatternByHalfTheResolution) {
    // A line of one cell is narrower than the disc.
    const auto thicknessWith = [](float res) {
        ProcessModel model;
        SetUpGrid(model, 9, 9, 1.0f);
        AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
        UpdateCoverMap(model.stack, model.grid);
        MaskPolygon line;
        line.layer = 5;
        line.minX = 3.5;
        line.maxX = 5.0;
        line.maxY = 20.0;
        line.points = {{3.5, 0.0}, {5.0, 0.0}, {5.0, 20.0}, {3.5, 20.0}};
        model.polygons.push_back(line);
        ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(0.5f, 90.0f, true, res));
        return ThicknessInRow(model, 4);
    };
    EXPECT_EQ(thicknessWith(0.0f), (std::vector<float>{0, 0, 0, 0, 0.5f, 0, 0, 0, 0}));
    EXPECT_EQ(thicknessWith(1.9f), thicknessWith(0.0f));
    // A radius of one: three cells of five. A radius of two: five of thirteen.
    EXPECT_EQ(thicknessWith(2.0f), thicknessWith(0.0f));
    EXPECT_EQ(thicknessWith(4.0f), std::vector<float>(9, 0.0f));
}

TEST(Photo, NeverCutsUnderItsBottom) {
    ProcessModel model;
    SetUpMask(model, 12, 6, 0.1f, 4);
    // Planarised resist over a ridge is thinner than the thickness that is cut.
    Layer& ground = *model.stack.layers[0];
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        ground.top[cell] = cell % 12 == 4 || cell % 12 == 5 ? 1.8f : 1.0f;
    }
    UpdateCoverMap(model.stack, model.grid);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(1.0f, 20.0f));
    const Layer& resist = *model.stack.layers[1];
    int empty = 0;
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        EXPECT_GE(resist.top[cell], resist.bottom[cell]);
        empty += cell % 12 >= 4 && resist.top[cell] == resist.bottom[cell] ? 1 : 0;
    }
    EXPECT_GT(empty, 0);
}

TEST(Photo, LeavesThePolygonsForAnotherOneWithTheSameMask) {
    ProcessModel model;
    SetUpMask(model, 8, 6, 1.0f, 4);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 90.0f));
    const std::vector<float> first = ThicknessInRow(model, 3);
    ExecuteStrip(model.stack, model.grid, {});
    EXPECT_EQ(model.stack.layers[1], nullptr);
    ExecutePhoto(model.stack, model.grid, model.polygons, PhotoStep(2.0f, 90.0f));
    ASSERT_EQ(model.stack.layers.size(), 3U);
    EXPECT_EQ(ThicknessInRow(model, 3), first);
}

}  // namespace
}  // namespace zelmo
