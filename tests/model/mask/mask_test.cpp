#include "model/mask/mask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/model/grid_model.h"
#include "tests/model/mask/made_polygons.h"

namespace zelmo {
namespace {

constexpr float largest = std::numeric_limits<float>::max();

/// The mask of layer 1 as text, one line a row, row 0 first: '#' is resist.
std::vector<std::string> Raster(const ProcessModel& model, bool maskDark) {
    std::vector<std::uint8_t> mask(model.grid.CellCount(), 3);
    RasteriseMask(model.grid, model.polygons, mask, maskOne, maskDark);
    std::vector<std::string> lines;
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        std::string line;
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            line += mask[CellAt(model, col, row)] == 1   ? '#'
                    : mask[CellAt(model, col, row)] == 0 ? '.'
                                                         : '?';
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::uint8_t> MaskOf(const std::vector<std::string>& lines) {
    std::vector<std::uint8_t> mask;
    for (const std::string& line : lines) {
        for (const char cell : line) {
            mask.push_back(cell == '#' ? 1 : 0);
        }
    }
    return mask;
}

class MaskGrid : public testing::Test {
protected:
    void SetUp() override { SetUpGrid(model, 8, 4, 1.0f); }

    ProcessModel model;
};

using Lines = std::vector<std::string>;

TEST_F(MaskGrid, DarkMaskKeepsResistInsideThePolygons) {
    model.polygons.push_back(MakeRectangle(1, 1.5, 0.5, 4.5, 2.5));
    EXPECT_EQ(Raster(model, true), (Lines{"........",  //
                                          "..##....",  //
                                          "........",  //
                                          "........"}));
}

TEST_F(MaskGrid, ClearMaskKeepsResistOutsideThePolygons) {
    model.polygons.push_back(MakeRectangle(1, 1.5, 0.5, 4.5, 3.0));
    EXPECT_EQ(Raster(model, false), (Lines{"########",  //
                                           "##..####",  //
                                           "##..####",  //
                                           "########"}));
}

TEST_F(MaskGrid, OtherLayersDoNotCount) {
    model.polygons.push_back(MakeRectangle(2, 0.0, 0.0, 8.0, 4.0));
    EXPECT_EQ(Raster(model, true), Lines(4, "........"));
    EXPECT_EQ(Raster(model, false), Lines(4, "########"));
}

TEST_F(MaskGrid, UpperEndsOfACellRangeAreExclusive) {
    // The cells 1 and 2 of a row lie inside, but the range ends at the cell that holds the edge.
    model.polygons.push_back(MakeRectangle(1, 0.5, 0.5, 2.9, 2.9));
    EXPECT_EQ(Raster(model, true)[1], ".#......");
    // Between two grid lines there is no cell at all.
    model.polygons.clear();
    model.polygons.push_back(MakeRectangle(1, 2.1, 0.0, 2.9, 4.0));
    EXPECT_EQ(Raster(model, true), Lines(4, "........"));
}

TEST_F(MaskGrid, PolygonsThatMeetOnAGridLineJoinWithoutASeam) {
    model.polygons.push_back(MakeRectangle(1, 1.0, 0.0, 4.0, 4.0));
    model.polygons.push_back(MakeRectangle(1, 4.0, 0.0, 6.0, 4.0));
    EXPECT_EQ(Raster(model, true), Lines(4, ".#####.."));
    EXPECT_EQ(Raster(model, false), Lines(4, "#.....##"));
}

TEST_F(MaskGrid, PolygonsThatOverlapJoin) {
    model.polygons.push_back(MakeRectangle(1, 1.0, 0.0, 5.0, 4.0));
    model.polygons.push_back(MakeRectangle(1, 3.0, 1.0, 7.0, 3.0));
    EXPECT_EQ(Raster(model, true), (Lines{".####...",  //
                                          ".######.",  //
                                          ".######.",  //
                                          ".####..."}));
    EXPECT_EQ(Raster(model, false)[1], "#......#");
}

TEST_F(MaskGrid, PolygonsThatMeetBetweenGridLinesLeaveASeamOfOneCell) {
    model.polygons.push_back(MakeRectangle(1, 1.0, 0.0, 4.5, 4.0));
    model.polygons.push_back(MakeRectangle(1, 4.5, 0.0, 7.0, 4.0));
    EXPECT_EQ(Raster(model, true), Lines(4, ".###.##."));
    EXPECT_EQ(Raster(model, false), Lines(4, "#...#..#"));
}

TEST_F(MaskGrid, PolygonsAreCutAtTheGridsEdge) {
    model.polygons.push_back(MakeRectangle(1, -5.0, -5.0, 3.0, 50.0));
    EXPECT_EQ(Raster(model, true), Lines(4, "###....."));
    model.polygons.push_back(MakeRectangle(1, 20.0, 0.0, 30.0, 4.0));
    model.polygons.push_back(MakeRectangle(1, -30.0, 0.0, -20.0, 4.0));
    EXPECT_EQ(Raster(model, true), Lines(4, "###....."));
}

TEST_F(MaskGrid, HolesAndCrossingsFollowTheEvenOddRule) {
    // One outline that runs around the hole as well.
    model.polygons.push_back(MakePolygon(
        1, {{0, 0}, {7, 0}, {7, 4}, {0, 4}, {0, 0}, {2, 1}, {2, 3}, {5, 3}, {5, 1}, {2, 1}}));
    EXPECT_EQ(Raster(model, true), (Lines{"#######.",  //
                                          "##...##.",  //
                                          "##...##.",  //
                                          "#######."}));
}

TEST_F(MaskGrid, ImpossibleBoxesReachNoCell) {
    MaskPolygon polygon = MakeRectangle(1, 0.0, 0.0, 8.0, 4.0);
    polygon.maxX = std::numeric_limits<double>::quiet_NaN();
    model.polygons = {polygon};
    EXPECT_EQ(Raster(model, true), Lines(4, "........"));
    polygon.maxX = 1e300;
    model.polygons = {polygon};
    EXPECT_EQ(Raster(model, true), Lines(4, "........"));
    polygon.maxX = 2147483647.0;
    polygon.minX = -1e300;
    model.polygons = {polygon};
    EXPECT_EQ(Raster(model, true), Lines(4, "########"));
}

TEST_F(MaskGrid, SmallestSizeIsThatOfTheNarrowestBox) {
    std::vector<std::uint8_t> mask(model.grid.CellCount());
    EXPECT_EQ(RasteriseMask(model.grid, model.polygons, mask, maskOne, true),
              static_cast<double>(largest));
    model.polygons.push_back(MakeRectangle(1, 0.0, 0.0, 3.0, 2.0));
    model.polygons.push_back(MakeRectangle(1, 0.0, 0.0, 0.3, 4.0));
    model.polygons.push_back(MakeRectangle(2, 0.0, 0.0, 0.1, 4.0));
    // Rounded to single precision on the way.
    EXPECT_EQ(RasteriseMask(model.grid, model.polygons, mask, maskOne, true),
              static_cast<double>(0.3f));
}

TEST_F(MaskGrid, APolygonWithoutPointsIsOutOfRange) {
    MaskPolygon polygon = MakeRectangle(1, 0.0, 0.0, 8.0, 4.0);
    polygon.points.clear();
    model.polygons = {polygon};
    std::vector<std::uint8_t> mask(model.grid.CellCount());
    EXPECT_THROW(RasteriseMask(model.grid, model.polygons, mask, maskOne, true), std::out_of_range);
}

/// A square of 2 by 2 cells in each quarter of a grid of 8 by 8, on layer 1 with datatypes 0 and 5
/// in the lower half, on layer 2 with the same in the upper half.
ProcessModel FourSquares() {
    ProcessModel model;
    SetUpGrid(model, 8, 8, 1.0f);
    for (const std::uint32_t quarter : {0u, 1u, 2u, 3u}) {
        const double x = quarter % 2 == 0 ? 0.5 : 4.5;
        const double y = quarter / 2 == 0 ? 0.5 : 4.5;
        model.polygons.push_back(MakeRectangle(1 + quarter / 2, x, y, x + 2.0, y + 2.0));
        model.polygons.back().datatype = quarter % 2 * 5;
    }
    return model;
}

/// A digit for each quarter that the mask draws in.
std::string Quarters(const std::vector<MaskLayer>& mask) {
    const ProcessModel model = FourSquares();
    std::vector<std::uint8_t> cells(model.grid.CellCount());
    RasteriseMask(model.grid, model.polygons, cells, mask, true);
    std::string quarters;
    for (const std::int32_t quarter : {0, 1, 2, 3}) {
        const std::size_t cell = CellAt(model, 1 + quarter % 2 * 4, 1 + quarter / 2 * 4);
        quarters += cells[cell] == 1 ? std::to_string(quarter) : "";
    }
    return quarters;
}

TEST(RasteriseMask, DrawsAllDatatypesOfALayerOrOne) {
    EXPECT_EQ(Quarters({{1, std::nullopt}}), "01");
    EXPECT_EQ(Quarters({{2, std::nullopt}}), "23");
    EXPECT_EQ(Quarters({{1, 0}}), "0");
    EXPECT_EQ(Quarters({{1, 5}}), "1");
    EXPECT_EQ(Quarters({{2, 5}}), "3");
    EXPECT_EQ(Quarters({{1, 1}}), "");
    EXPECT_EQ(Quarters({{5, 1}}), "");
}

TEST(RasteriseMask, DrawsSeveralLayersTogether) {
    EXPECT_EQ(Quarters({{1, 5}, {2, 0}}), "12");
    EXPECT_EQ(Quarters({{2, 0}, {1, std::nullopt}, {2, 0}, {1, 5}}), "012");
    EXPECT_EQ(Quarters({{3, std::nullopt}, {2, 5}}), "3");
    EXPECT_EQ(Quarters({}), "");
}

TEST(RasteriseMask, JoinsDatatypesWithoutASeam) {
    ProcessModel model;
    SetUpGrid(model, 8, 4, 1.0f);
    model.polygons = {MakeRectangle(1, 0.5, 0.5, 3.0, 2.5), MakeRectangle(1, 3.0, 0.5, 6.5, 2.5)};
    model.polygons[1].datatype = 7;
    std::vector<std::uint8_t> cells(model.grid.CellCount());
    const std::vector<MaskLayer> mask{{1, 0}, {1, 7}};
    EXPECT_EQ(RasteriseMask(model.grid, model.polygons, cells, mask, false), 2.0);
    std::size_t open = 0;
    for (const std::uint8_t cell : cells) {
        open += cell == 0 ? 1 : 0;
    }
    EXPECT_EQ(open, 5u);
}

TEST(PointInPolygon, LeftAndLowerEdgesAreInsideRightAndUpperOnesOutside) {
    const MaskPolygon square = MakeRectangle(1, 1.0, 1.0, 3.0, 3.0);
    EXPECT_TRUE(PointInPolygon(square, 2.0, 2.0));
    EXPECT_TRUE(PointInPolygon(square, 1.0, 2.0));
    EXPECT_FALSE(PointInPolygon(square, 3.0, 2.0));
    EXPECT_TRUE(PointInPolygon(square, 2.0, 1.0));
    EXPECT_FALSE(PointInPolygon(square, 2.0, 3.0));
    EXPECT_TRUE(PointInPolygon(square, 1.0, 1.0));
    EXPECT_FALSE(PointInPolygon(square, 3.0, 1.0));
    EXPECT_FALSE(PointInPolygon(square, 1.0, 3.0));
    EXPECT_FALSE(PointInPolygon(square, 0.999, 2.0));
    EXPECT_FALSE(PointInPolygon(square, 4.0, 2.0));
}

TEST(PointInPolygon, DoesNotDependOnTheDirectionOfTheOutline) {
    const MaskPolygon clockwise = MakePolygon(1, {{0, 0}, {0, 2}, {4, 2}, {4, 0}});
    EXPECT_TRUE(PointInPolygon(clockwise, 3.9, 1.9));
    EXPECT_FALSE(PointInPolygon(clockwise, 4.1, 1.9));
}

TEST(PointInPolygon, FollowsSlopingEdges) {
    const MaskPolygon triangle = MakePolygon(1, {{0, 0}, {4, 0}, {0, 4}});
    EXPECT_TRUE(PointInPolygon(triangle, 1.0, 2.9));
    EXPECT_FALSE(PointInPolygon(triangle, 1.0, 3.1));
    // On the sloping edge itself, a right one.
    EXPECT_FALSE(PointInPolygon(triangle, 2.0, 2.0));
}

TEST(PointInPolygon, WithoutPointsIsOutOfRange) {
    try {
        PointInPolygon(MaskPolygon{}, 0.0, 0.0);
        FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector subscript");
    }
}

Lines Blur(const Lines& lines, float radius) {
    ProcessModel model;
    SetUpGrid(model, static_cast<std::int32_t>(lines[0].size()),
              static_cast<std::int32_t>(lines.size()), 1.0f);
    std::vector<std::uint8_t> mask(model.grid.CellCount(), 9);
    BlurMask(model.grid, mask, MaskOf(lines), radius);
    Lines blurred;
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        std::string line;
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            const std::uint8_t cell = mask[CellAt(model, col, row)];
            line += cell == 1 ? '#' : cell == 0 ? '.' : '?';
        }
        blurred.push_back(line);
    }
    return blurred;
}

TEST(MaskBlur, OfRadiusZeroLeavesTheMask) {
    const Lines lines{"#.#.#", ".###.", "#...#"};
    EXPECT_EQ(Blur(lines, 0.0f), lines);
    EXPECT_EQ(Blur(lines, 0.9f), lines);
}

TEST(MaskBlur, TakesTheMajorityInTheDisc) {
    // A disc of radius 1 has five cells, four at a side and three in a corner.
    EXPECT_EQ(Blur({".....",  //
                    ".###.",  //
                    ".###.",  //
                    ".###.",  //
                    "....."},
                   1.0f),
              (Lines{".....",  //
                     ".###.",  //
                     ".###.",  //
                     ".###.",  //
                     "....."}));
    EXPECT_EQ(Blur({".....",  //
                    ".....",  //
                    "..#..",  //
                    ".....",  //
                    "....."},
                   1.0f),
              Lines(5, "....."));
    EXPECT_EQ(Blur({"#####",  //
                    "#####",  //
                    "##.##",  //
                    "#####",  //
                    "#####"},
                   1.0f),
              Lines(5, "#####"));
}

TEST(MaskBlur, RoundsCorners) {
    EXPECT_EQ(Blur({".........",  //
                    ".........",  //
                    "..#####..",  //
                    "..#####..",  //
                    "..#####..",  //
                    "..#####..",  //
                    "..#####..",  //
                    ".........",  //
                    "........."},
                   2.0f),
              (Lines{".........",  //
                     ".........",  //
                     "...###...",  //
                     "..#####..",  //
                     "..#####..",  //
                     "..#####..",  //
                     "...###...",  //
                     ".........",  //
                     "........."}));
}

TEST(MaskBlur, RemovesFeaturesUnderTheResolution) {
    EXPECT_EQ(Blur(Lines(9, "....#...."), 2.0f), Lines(9, "........."));
    EXPECT_EQ(Blur(Lines(9, "####.####"), 2.0f), Lines(9, "#########"));
}

TEST(MaskBlur, GivesATieToTheClearSide) {
    // At the edge of the grid the disc of radius 1 has four cells, two of them set.
    EXPECT_EQ(Blur({"..#",  //
                    ".##",  //
                    "..."},
                   1.0f)[1],
              "..#");
    EXPECT_EQ(Blur({"##", ".."}, 1.0f), (Lines{"##", ".."}));
    EXPECT_EQ(Blur({"#."}, 1.0f), (Lines{".."}));
}

/// Edge distances of a mask given as text.
std::vector<float> Distances(const Lines& lines, float spacing) {
    ProcessModel model;
    SetUpGrid(model, static_cast<std::int32_t>(lines[0].size()),
              static_cast<std::int32_t>(lines.size()), spacing);
    std::vector<float> distances(model.grid.CellCount(), -1.0f);
    MaskEdgeDistance(model.grid, distances, MaskOf(lines));
    return distances;
}

TEST(MaskEdgeDistance, MeasuresToTheNearestFreeCell) {
    const float r2 = std::sqrt(2.0f);
    const float r5 = std::sqrt(5.0f);
    EXPECT_EQ(Distances({"####",  //
                         "####",  //
                         "##.#"},
                        1.0f),
              (std::vector<float>{2 * r2, r5, 2, r5,  //
                                  r5, r2, 1, r2,      //
                                  2, 1, 0, 1}));
}

TEST(MaskEdgeDistance, OfAResistCellBesideAFreeOneIsOnePitch) {
    EXPECT_EQ(Distances({".#.#"}, 0.7f), (std::vector<float>{0, 0.7f, 0, 0.7f}));
}

TEST(MaskEdgeDistance, IsZeroWithoutResist) {
    EXPECT_EQ(Distances({"...", "..."}, 1.0f), std::vector<float>(6, 0.0f));
}

TEST(MaskEdgeDistance, OfAGridUnderResistIsTheLargestFloat) {
    EXPECT_EQ(Distances({"###", "###"}, 1.0f), std::vector<float>(6, largest));
    EXPECT_EQ(Distances({"#"}, 1.0f), std::vector<float>(1, largest));
}

TEST(MaskEdgeDistance, FindsTheOneFreeCellOfALargeGrid) {
    for (const std::size_t free : {std::size_t{0}, std::size_t{20}, std::size_t{399}}) {
        ProcessModel model;
        SetUpGrid(model, 20, 20, 1.0f);
        std::vector<std::uint8_t> mask(400, 1);
        mask[free] = 0;
        std::vector<float> distances(400, -1.0f);
        MaskEdgeDistance(model.grid, distances, mask);
        for (std::size_t cell = 0; cell < 400; ++cell) {
            const float dx = static_cast<float>(cell % 20) - static_cast<float>(free % 20);
            const float dy = static_cast<float>(cell / 20) - static_cast<float>(free / 20);
            EXPECT_EQ(distances[cell], std::sqrt(dx * dx + dy * dy));
        }
    }
}

TEST(MaskEdgeDistance, CanStartBehindTheNearestCell) {
    // With this pitch ten cells truncate to nine, while eleven cells less one truncate to ten: at
    // the cell ten columns from the wall the search starts behind the entry straight to the right,
    // and finds its slanted neighbour.
    constexpr float pitch = 0.013f;
    const std::vector<float> distances = Distances(Lines(12, "############."), pitch);
    EXPECT_EQ(distances[1], 11.0f * pitch);
    EXPECT_EQ(distances[2], std::sqrt(101.0f) * pitch);
    EXPECT_EQ(distances[3], 9.0f * pitch);
}

TEST(MaskEdgeDistance, KeepsThePreviousOneWhereTheSearchFindsNothing) {
    // The same, but with one free cell: nothing comes after it in the table.
    constexpr float pitch = 0.013f;
    Lines lines(12, "#############");
    lines[0] = "############.";
    const std::vector<float> distances = Distances(lines, pitch);
    EXPECT_EQ(distances[1], 11.0f * pitch);
    EXPECT_EQ(distances[2], 11.0f * pitch);
    EXPECT_EQ(distances[13], std::sqrt(145.0f) * pitch);
}

}  // namespace
}  // namespace zelmo
