#include "results/drawn_point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "model/grid/places.h"
#include "model/grid/shown_window.h"
#include "tests/plain/mesh_plain.h"
#include "tests/results/random_stack.h"

namespace zelmo {
namespace {

/// The height of the plane of a mesh's triangle above a point, if the triangle is above it.
std::optional<double> HeightAbove(const LayerMesh& mesh, std::size_t triangle, double x, double y) {
    const auto corner = [&](std::size_t i) {
        return mesh.vertices[mesh.indices[3 * triangle + i]].position;
    };
    const auto& a = corner(0);
    const auto& b = corner(1);
    const auto& c = corner(2);
    const auto area = [](double x0, double y0, double x1, double y1) { return x0 * y1 - x1 * y0; };
    const double whole = area(b[0] - a[0], b[1] - a[1], c[0] - a[0], c[1] - a[1]);
    if (whole <= 0.0) {
        return std::nullopt;  // a wall
    }
    const double ofB = area(x - a[0], y - a[1], c[0] - a[0], c[1] - a[1]) / whole;
    const double ofC = area(b[0] - a[0], b[1] - a[1], x - a[0], y - a[1]) / whole;
    if (ofB < 0.0 || ofC < 0.0 || ofB + ofC > 1.0) {
        return std::nullopt;
    }
    return a[2] + ofB * (b[2] - a[2]) + ofC * (c[2] - a[2]);
}

TEST(DrawnPoint, LiesOnTheTrianglesOfTheMesh) {
    int found = 0;
    for (std::uint32_t seed = 1; seed < 12; ++seed) {
        const auto model = MakeRandomStack(seed);
        const Grid& grid = model->grid;
        const ShownWindow shown = FindShownWindow(grid);
        Layer layer;
        layer.cols = grid.columns;
        layer.rows = grid.rows;
        layer.spacing = grid.spacing;
        TestRandom random(seed);
        layer.bottom.assign(grid.CellCount(), 0.0f);
        layer.top.assign(grid.CellCount(), 0.0f);
        for (std::size_t cell = 0; cell < grid.CellCount(); ++cell) {
            layer.bottom[cell] = random.Unit();
            layer.top[cell] = layer.bottom[cell] + 0.01f + random.Unit();
        }
        const LayerMesh mesh = MakeLayerMeshPlain(layer, shown.marginCols, shown.marginRows);
        for (int i = 0; i < 50 && shown.rows > 1; ++i) {
            const double col = static_cast<double>(random.Unit()) * (shown.cols - 1);
            const double row = static_cast<double>(random.Unit()) * (shown.rows - 1);
            const DrawnPoint point(grid, {col + shown.marginCols, row + shown.marginRows});
            const double bottom = point.HeightOf(layer.bottom);
            const double top = point.HeightOf(layer.top);
            for (std::size_t triangle = 0; 3 * triangle < mesh.indices.size(); ++triangle) {
                const double spacing = grid.spacing;
                const auto z = HeightAbove(mesh, triangle, col * spacing, row * spacing);
                if (z) {
                    ++found;
                    EXPECT_LT(std::min(std::abs(*z - bottom), std::abs(*z - top)), 1e-5);
                }
            }
        }
    }
    EXPECT_GT(found, 500);
}

TEST(DrawnPoint, AtACellIsTheCellsOwnHeight) {
    const auto model = MakeRandomStack(5);
    const Grid& grid = model->grid;
    const Layer& layer = *model->stack.layers.front();
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t col = 0; col < grid.columns; ++col) {
            const DrawnPoint point(grid, {static_cast<double>(col), static_cast<double>(row)});
            EXPECT_EQ(point.HeightOf(layer.top), layer.top[CellAt(*model, col, row)]);
        }
    }
}

TEST(DrawnPoint, WhatIsNoNumberElsewhereDoesNotCount) {
    Grid grid;
    grid.columns = 3;
    grid.rows = 2;
    std::vector<float> heights(6, 1.0f);
    heights[4] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(DrawnPoint(grid, {0.5, 0.0}).HeightOf(heights), 1.0);
    EXPECT_EQ(DrawnPoint(grid, {2.0, 1.0}).HeightOf(heights), 1.0);
    EXPECT_TRUE(std::isnan(DrawnPoint(grid, {1.0, 0.5}).HeightOf(heights)));
}

TEST(DrawnPoint, AGridOfOneRowIsALine) {
    Grid grid;
    grid.columns = 3;
    grid.rows = 1;
    const std::vector<float> heights{1.0f, 3.0f, 4.0f};
    EXPECT_EQ(DrawnPoint(grid, {0.5, 0.0}).HeightOf(heights), 2.0);
    EXPECT_EQ(DrawnPoint(grid, {2.0, 0.0}).HeightOf(heights), 4.0);
}

}  // namespace
}  // namespace zelmo
