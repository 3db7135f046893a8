#include "model/offset/surface_offset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/offset/missing_cells.h"
#include "tests/model/grid_model.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

std::vector<float> Offset(const ProcessModel& model, const std::vector<float>& heights,
                          float distance, float lateral) {
    std::vector<float> out(model.grid.CellCount(), 99.0f);
    OffsetSurface(model.grid, out, heights, distance, lateral);
    return out;
}

/// What `FillMissingCells` makes of a raster of this many columns.
std::vector<float> Fill(std::int32_t cols, const std::vector<float>& raster,
                        std::int32_t* filled = nullptr) {
    ProcessModel model;
    SetUpGrid(model, cols, static_cast<std::int32_t>(raster.size()) / cols, 1.0f);
    std::vector<float> out(raster);
    const std::int32_t count = FillMissingCells(cols, model.grid.rows, 1.0f, out);
    if (filled != nullptr) {
        *filled = count;
    }
    return out;
}

/// Heights by column, the same in every row.
std::vector<float> Profile(const ProcessModel& model, const std::vector<float>& columns) {
    std::vector<float> heights;
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        heights.insert(heights.end(), columns.begin(), columns.end());
    }
    return heights;
}

TEST(VertexNormals, PointStraightUpOnAFlatSurface) {
    const std::vector<float> heights(5 * 4, 1.7f);
    std::vector<float> normals(3 * heights.size(), 9.0f);
    ComputeVertexNormals(5, 4, 0.3f, normals, heights);
    for (std::size_t cell = 0; cell < heights.size(); ++cell) {
        EXPECT_EQ(normals[3 * cell], 0.0f);
        EXPECT_EQ(normals[3 * cell + 1], 0.0f);
        EXPECT_EQ(normals[3 * cell + 2], 1.0f);
    }
}

TEST(VertexNormals, LeanAwayFromARise) {
    // A plane that rises by one in x and by two in y has the normal (-1, -2, 1) everywhere, also
    // where the grid's edge leaves fewer squares.
    std::vector<float> heights;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 5; ++col) {
            heights.push_back(static_cast<float>(col + 2 * row));
        }
    }
    std::vector<float> normals(3 * heights.size());
    ComputeVertexNormals(5, 4, 1.0f, normals, heights);
    for (std::size_t cell = 0; cell < heights.size(); ++cell) {
        EXPECT_NEAR(normals[3 * cell], -1.0f / std::sqrt(6.0f), 1e-6f);
        EXPECT_NEAR(normals[3 * cell + 1], -2.0f / std::sqrt(6.0f), 1e-6f);
        EXPECT_NEAR(normals[3 * cell + 2], 1.0f / std::sqrt(6.0f), 1e-6f);
    }
}

TEST(VertexNormals, SumTheCrossProductsAroundTheCell) {
    // A spike on the right takes part in two of the eight products, (-1, -1, 1) and (-1, 1, 1); the
    // other six are (0, 0, 1).
    const std::vector<float> heights{0, 0, 0, 0, 0, 1, 0, 0, 0};
    std::vector<float> normals(27);
    ComputeVertexNormals(3, 3, 1.0f, normals, heights);
    const float length = std::sqrt(4.0f + 0.0f + 64.0f);
    EXPECT_EQ(normals[12], -2.0f / length);
    EXPECT_EQ(normals[13], 0.0f);
    EXPECT_EQ(normals[14], 8.0f / length);
}

TEST(VertexNormals, AreZeroWhereThereAreNone) {
    // A single row has no squares; a NaN has no length; neither has a sum of infinite length.
    std::vector<float> normals(9, 5.0f);
    ComputeVertexNormals(3, 1, 1.0f, normals, std::vector<float>{1.0f, 2.0f, 3.0f});
    EXPECT_EQ(normals, std::vector<float>(9, 0.0f));

    std::vector<float> square(12, 5.0f);
    ComputeVertexNormals(2, 2, 1.0f, square, std::vector<float>{nan, 0.0f, 0.0f, 0.0f});
    EXPECT_EQ(square[0], 0.0f);
    EXPECT_EQ(square[2], 0.0f);

    ComputeVertexNormals(2, 2, 1.0f, square, std::vector<float>{1e30f, 0.0f, 0.0f, 0.0f});
    EXPECT_EQ(square[0], 0.0f);
    EXPECT_EQ(square[2], 0.0f);
}

TEST(SurfaceOffset, RaisesAFlatSurfaceByTheDistance) {
    ProcessModel model;
    SetUpGrid(model, 12, 9, 0.37f);
    for (const float lateral : {0.0f, 0.1f, 1.0f, 5.0f}) {
        const std::vector<float> heights(model.grid.CellCount(), 1.3f);
        for (const float height : Offset(model, heights, 0.45f, lateral)) {
            EXPECT_NEAR(height, 1.75f, 1e-6f);
        }
        for (const float height : Offset(model, heights, -0.45f, lateral)) {
            EXPECT_NEAR(height, 0.85f, 1e-6f);
        }
    }
}

TEST(SurfaceOffset, WithoutLateralShareMovesWallsStraightUp) {
    ProcessModel model;
    SetUpGrid(model, 9, 6, 0.25f);
    const std::vector<float> heights = Profile(model, {1, 1, 1, 3, 3, 3, 0.5f, 0.5f, 2});
    const std::vector<float> up = Offset(model, heights, 0.25f, 0.0f);
    const std::vector<float> down = Offset(model, heights, -0.25f, 0.0f);
    for (std::size_t cell = 0; cell < heights.size(); ++cell) {
        EXPECT_NEAR(up[cell], heights[cell] + 0.25f, 1e-5f);
        EXPECT_NEAR(down[cell], heights[cell] - 0.25f, 1e-5f);
    }
}

/// How far the space below `level` in a trench reaches along one row, in cells.
int TrenchWidth(const std::vector<float>& surface, std::int32_t cols, float level) {
    int width = 0;
    for (std::int32_t col = 0; col < cols; ++col) {
        width += surface[static_cast<std::size_t>(5 * cols + col)] < level ? 1 : 0;
    }
    return width;
}

TEST(SurfaceOffset, NarrowsATrenchByItsLateralShareOnEachWall) {
    ProcessModel model;
    SetUpGrid(model, 81, 11, 0.1f);
    std::vector<float> columns(81, 12.0f);
    for (std::size_t col = 20; col <= 60; ++col) {
        columns[col] = 2.0f;
    }
    const std::vector<float> heights = Profile(model, columns);
    // A micrometre of film; half-way up the wall.
    const int open = TrenchWidth(Offset(model, heights, 1.0f, 0.0f), 81, 7.0f);
    const int half = TrenchWidth(Offset(model, heights, 1.0f, 0.5f), 81, 7.0f);
    const int full = TrenchWidth(Offset(model, heights, 1.0f, 1.0f), 81, 7.0f);
    EXPECT_EQ(open, 41);
    EXPECT_NEAR(open - half, 10, 1);
    EXPECT_NEAR(open - full, 20, 1);
    // A sinking surface widens it.
    EXPECT_NEAR(TrenchWidth(Offset(model, heights, -1.0f, 0.5f), 81, 5.0f) - open, 10, 1);
}

TEST(SurfaceOffset, KeepsTheUpperSheetOfARisingFold) {
    // The walls of a narrow trench move through each other.
    ProcessModel model;
    SetUpGrid(model, 31, 7, 0.1f);
    std::vector<float> columns(31, 3.0f);
    for (std::size_t col = 14; col <= 16; ++col) {
        columns[col] = 1.0f;
    }
    const std::vector<float> heights = Profile(model, columns);
    const std::vector<float> up = Offset(model, heights, 0.5f, 1.0f);
    for (std::int32_t col = 10; col <= 20; ++col) {
        EXPECT_GT(up[CellAt(model, col, 3)], 1.6f) << col;
    }
    // Turned over, the sinking surface of a ridge is cut by its lower sheet.
    std::vector<float> ridge(heights);
    for (float& height : ridge) {
        height = 4.0f - height;
    }
    const std::vector<float> down = Offset(model, ridge, -0.5f, 1.0f);
    for (std::size_t cell = 0; cell < down.size(); ++cell) {
        EXPECT_NEAR(down[cell], 4.0f - up[cell], 1e-4f) << cell;
    }
}

TEST(SurfaceOffset, ContinuesTheSurfaceWhereItMovedAwayFromTheEdge) {
    // A slope of 45 degrees that rises to the right moves to the left by 0.7 micrometres, and seven
    // columns at the right edge are left without a triangle. The surface goes on as a plane.
    ProcessModel model;
    SetUpGrid(model, 30, 8, 0.1f);
    std::vector<float> columns;
    for (int col = 0; col < 30; ++col) {
        columns.push_back(1.0f + 0.1f * static_cast<float>(col));
    }
    const std::vector<float> out = Offset(model, Profile(model, columns), 1.0f, 1.0f);
    const float rise = 1.0f + std::sqrt(0.5f);
    for (std::int32_t col = 0; col < 30; ++col) {
        EXPECT_NEAR(out[CellAt(model, col, 4)], columns[static_cast<std::size_t>(col)] + rise,
                    1e-3f)
            << col;
    }
}

TEST(SurfaceOffset, TakesAHeightOfExactlyZeroForAGap) {
    ProcessModel model;
    SetUpGrid(model, 8, 5, 1.0f);
    std::vector<float> columns{2, 2, 2, 2, 0.5f, 0.5f, 0.5f, 0.5f};
    const std::vector<float> out = Offset(model, Profile(model, columns), -0.5f, 0.0f);
    for (std::int32_t row = 0; row < 5; ++row) {
        // The wall's two cells at 2.0 - 0.5 are nearest on the left; they continue level.
        EXPECT_EQ(out[CellAt(model, 4, row)], 1.5f);
        EXPECT_EQ(out[CellAt(model, 7, row)], 1.5f);
    }
}

TEST(SurfaceOffset, IsZeroWhereNothingHasAValue) {
    ProcessModel model;
    SetUpGrid(model, 6, 5, 1.0f);
    const std::vector<float> zero(model.grid.CellCount(), 0.0f);
    EXPECT_EQ(Offset(model, std::vector<float>(model.grid.CellCount(), 0.5f), -0.5f, 0.3f), zero);
    EXPECT_EQ(Offset(model, std::vector<float>(model.grid.CellCount(), nan), 0.5f, 0.3f), zero);
}

TEST(SurfaceOffset, OfASingleRowOrColumnIsZero) {
    // There are no triangles.
    ProcessModel row;
    SetUpGrid(row, 6, 1, 1.0f);
    EXPECT_EQ(Offset(row, std::vector<float>(6, 2.0f), 1.0f, 0.5f), std::vector<float>(6, 0.0f));
    ProcessModel column;
    SetUpGrid(column, 1, 6, 1.0f);
    EXPECT_EQ(Offset(column, std::vector<float>(6, 2.0f), 1.0f, 0.5f), std::vector<float>(6, 0.0f));
    ProcessModel nothing;
    EXPECT_TRUE(Offset(nothing, {}, 1.0f, 0.5f).empty());
}

TEST(SurfaceOffset, LeavesANaNToItsSurroundings) {
    ProcessModel model;
    SetUpGrid(model, 9, 7, 1.0f);
    std::vector<float> heights(model.grid.CellCount(), 1.0f);
    heights[CellAt(model, 4, 3)] = nan;
    for (const float height : Offset(model, heights, 1.0f, 0.2f)) {
        EXPECT_NEAR(height, 2.0f, 1e-6f);
    }
}

TEST(SurfaceOffset, TakesInCellsJustOutsideATriangle) {
    // At the grid's right edge the surface of a slight slope moves away from the last column by
    // less than the tolerance: the triangles still reach it.
    ProcessModel model;
    SetUpGrid(model, 4, 4, 1.0f);
    const auto lastColumn = [&model](float lateral) {
        // A bend in the slope, so that continuing the line would show.
        return Offset(model, Profile(model, {1.0f, 1.0f, 1.25f, 2.25f}), 1.0f,
                      lateral)[CellAt(model, 3, 1)];
    };
    // The last column's normal leans by 0.7071: a share of 0.001 moves it by 0.0007.
    EXPECT_NEAR(lastColumn(0.001f), 3.25f, 2e-3f);
    // By 0.0028 it is out of reach, and the line through the two columns before takes over.
    EXPECT_NEAR(lastColumn(0.004f), 2.5f, 2e-2f);
}

TEST(MissingCells, CopyTheCellsThatHaveAValue) {
    const std::vector<float> raster{1, 2, 3, -4, nan, 6};
    std::int32_t filled = -1;
    EXPECT_EQ(BitsOf(Fill(3, raster, &filled)), BitsOf(raster));
    EXPECT_EQ(filled, 0);
}

TEST(MissingCells, ContinueTheLineThroughTheNearestTwoValues) {
    // From the left: 1, then 3 two cells further on; the gap between them does not matter.
    EXPECT_EQ(Fill(5, {0, 1, 0, 3, 9})[0], 0.0f);
    EXPECT_EQ(Fill(5, {0, 0, 5, 4, 9})[0], 7.0f);
    EXPECT_EQ(Fill(5, {9, 1, 0, 2, 0})[4], 2.5f);
}

TEST(MissingCells, TakeASingleValueAsItIs) {
    EXPECT_EQ(Fill(4, {0, 0, 0, 5}), (std::vector<float>{5, 5, 5, 5}));
}

TEST(MissingCells, AverageDirectionsAtTheSameDistance) {
    // The middle cell: 10 above, 20 on the left, 31 on the right further away.
    std::int32_t filled = 0;
    const std::vector<float> out = Fill(4,
                                        {0, 0, 0, 0,    //
                                         20, 0, 0, 31,  //
                                         0, 10, 0, 0},  //
                                        &filled);
    EXPECT_EQ(out[5], 15.0f);
    // The next one: 31 alone is nearest; 20 is further, and nothing is above or below.
    EXPECT_EQ(out[6], 31.0f);
    EXPECT_EQ(filled, 9);
}

TEST(MissingCells, AverageAllFourDirections) {
    const std::vector<float> out = Fill(3, {0, 1, 0,  //
                                            2, 0, 4,  //
                                            0, 9, 0});
    EXPECT_EQ(out[4], 4.0f);
}

TEST(MissingCells, NeverFeedAnotherOne) {
    // Each cell sees the values of the raster alone: continued from 8 and 4, not from 12.
    EXPECT_EQ(Fill(4, {0, 0, 8, 4}), (std::vector<float>{16, 12, 8, 4}));
    EXPECT_EQ(Fill(4, {4, 8, 0, 0}), (std::vector<float>{4, 8, 12, 16}));
}

TEST(MissingCells, OffEveryLineTakeTheNearestCell) {
    // Seen from the corner (0, 0) both values stand on neither its row nor its column.
    const std::vector<float> out = Fill(4, {0, 0, 0, 0,  //
                                            0, 0, 6, 0,  //
                                            0, 5, 0, 0,  //
                                            0, 0, 0, 0});
    // (2, 1) and (1, 2) are equally far; the lower one comes first in the table.
    EXPECT_EQ(out[0], 6.0f);
    EXPECT_EQ(out[15], 6.0f);
    EXPECT_EQ(out[3], 6.0f);
    EXPECT_EQ(out[12], 5.0f);
}

TEST(MissingCells, AmongEquallyNearOnesTakeTheLowerLeftFirst) {
    const std::vector<float> out = Fill(3, {1, 0, 2,  //
                                            0, 0, 0,  //
                                            3, 0, 4});
    EXPECT_EQ(out[4], 1.0f);
    EXPECT_EQ(Fill(3, {0, 0, 2, 0, 0, 0, 3, 0, 4})[4], 2.0f);
    EXPECT_EQ(Fill(3, {0, 0, 0, 0, 0, 0, 3, 0, 4})[4], 3.0f);
    EXPECT_EQ(Fill(3, {0, 0, 0, 0, 0, 0, 0, 0, 4})[4], 4.0f);
}

TEST(MissingCells, StayZeroWhereThereIsNoValueAtAll) {
    std::int32_t filled = -1;
    const std::vector<float> out = Fill(4, std::vector<float>(12, -0.0f), &filled);
    EXPECT_EQ(BitsOf(out), BitsOf(std::vector<float>(12, 0.0f)));
    EXPECT_EQ(filled, 0);
}

TEST(MissingCells, CountANegativeZeroAsMissingAndANaNAsAValue) {
    EXPECT_EQ(Fill(3, {-0.0f, 2, 2})[0], 2.0f);
    EXPECT_TRUE(std::isnan(Fill(3, {0, nan, 2})[0]));
}

}  // namespace
}  // namespace zelmo
