#include "render/mesh/layer_mesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/grid/grid.h"
#include "model/stack.h"
#include "tests/plain/mesh_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

std::unique_ptr<Layer> MakeLayer(std::int32_t rows, std::int32_t cols, float spacing,
                                 float height) {
    Grid grid;
    grid.columns = cols;
    grid.rows = rows;
    grid.spacing = spacing;
    auto layer = CreateLayer(grid);
    layer->top.assign(layer->top.size(), height);
    layer->bottom.assign(layer->bottom.size(), height);
    return layer;
}

void Thicken(Layer& layer, std::int32_t col, std::int32_t row, float thickness) {
    layer.top[static_cast<std::size_t>(row * layer.cols + col)] += thickness;
}

bool IsWallVertex(const MeshVertex& vertex) {
    return vertex.normal[0] == 0.0f && vertex.normal[1] == -1.0f && vertex.normal[2] == 0.0f;
}

std::size_t CountWallVertices(const LayerMesh& mesh) {
    return static_cast<std::size_t>(
        std::count_if(mesh.vertices.begin(), mesh.vertices.end(), IsWallVertex));
}

/// A vertex of one of the two sheets, or null.
const MeshVertex* FindVertex(const LayerMesh& mesh, float x, float y, float z) {
    for (const MeshVertex& vertex : mesh.vertices) {
        if (vertex.position[0] == x && vertex.position[1] == y && vertex.position[2] == z &&
            !IsWallVertex(vertex)) {
            return &vertex;
        }
    }
    return nullptr;
}

// Triangles

TEST(LayerMesh, MaterialInTheMarginAloneGivesNoTriangle) {
    const auto layer = MakeLayer(8, 10, 0.5f, 1.0f);
    for (std::int32_t row = 0; row < 8; ++row) {
        for (std::int32_t col = 0; col < 10; ++col) {
            if (col < 2 || col >= 8 || row < 1 || row >= 7) {
                Thicken(*layer, col, row, 1.0f);
            }
        }
    }
    const LayerMesh mesh = MakeLayerMesh(*layer, 2, 1);
    EXPECT_TRUE(mesh.indices.empty());
    EXPECT_TRUE(mesh.vertices.empty());
    EXPECT_FALSE(MakeLayerMesh(*layer, 1, 1).indices.empty());
}

TEST(LayerMesh, OneThickCellGetsTheSixTrianglesAroundItOnEachSheet) {
    const auto layer = MakeLayer(7, 7, 1.0f, 2.0f);
    Thicken(*layer, 3, 3, 0.5f);
    const LayerMesh mesh = MakeLayerMesh(*layer, 1, 1);
    EXPECT_EQ(mesh.indices.size(), 2u * 6u * 3u);
    // The cell itself and the six neighbours that share a triangle with it, on two sheets
    EXPECT_EQ(mesh.vertices.size(), 2u * 7u);
    EXPECT_NE(FindVertex(mesh, 2.0f, 2.0f, 2.5f), nullptr);
    EXPECT_EQ(FindVertex(mesh, 1.0f, 1.0f, 2.0f), nullptr);
    EXPECT_NE(FindVertex(mesh, 1.0f, 3.0f, 2.0f), nullptr);
    EXPECT_NE(FindVertex(mesh, 3.0f, 1.0f, 2.0f), nullptr);
    EXPECT_EQ(FindVertex(mesh, 3.0f, 3.0f, 2.0f), nullptr);
}

TEST(LayerMesh, ACornerCellGetsFewerTriangles) {
    const auto lowerLeft = MakeLayer(6, 6, 1.0f, 0.0f);
    Thicken(*lowerLeft, 1, 1, 0.5f);
    // One triangle on each sheet and one wall quad
    EXPECT_EQ(MakeLayerMesh(*lowerLeft, 1, 1).indices.size(), 2u * 3u + 6u);
    const auto upperRight = MakeLayer(6, 6, 1.0f, 0.0f);
    Thicken(*upperRight, 4, 4, 0.5f);
    EXPECT_EQ(MakeLayerMesh(*upperRight, 1, 1).indices.size(), 2u * 3u);
    const auto upperLeft = MakeLayer(6, 6, 1.0f, 0.0f);
    Thicken(*upperLeft, 1, 4, 0.5f);
    EXPECT_EQ(MakeLayerMesh(*upperLeft, 1, 1).indices.size(), 2u * 2u * 3u);
}

TEST(LayerMesh, TrianglesAndVerticesStandInTheirOrder) {
    const auto layer = MakeLayer(2, 2, 0.5f, 1.0f);
    layer->top.assign(4, 3.0f);
    const LayerMesh mesh = MakeLayerMesh(*layer, 0, 0);
    const BareVector<std::uint32_t> indices = {0, 1, 2, 3, 4, 5,  1, 6,  2,
                                               4, 7, 5, 8, 9, 10, 8, 11, 9};
    EXPECT_EQ(mesh.indices, indices);
    const std::vector<std::array<float, 3>> positions = {
        {0.0f, 0.0f, 1.0f}, {0.5f, 0.0f, 1.0f}, {0.0f, 0.5f, 1.0f}, {0.0f, 0.0f, 3.0f},
        {0.5f, 0.0f, 3.0f}, {0.0f, 0.5f, 3.0f}, {0.5f, 0.5f, 1.0f}, {0.5f, 0.5f, 3.0f},
        {0.0f, 0.0f, 1.0f}, {0.5f, 0.0f, 3.0f}, {0.0f, 0.0f, 3.0f}, {0.5f, 0.0f, 1.0f}};
    ASSERT_EQ(mesh.vertices.size(), positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(mesh.vertices[i].position[axis], positions[i][axis]) << i;
        }
    }
}

TEST(LayerMesh, TheWallStandsWhereOneOfTwoFrontColumnsHasMaterial) {
    const auto layer = MakeLayer(9, 12, 1.0f, 1.0f);
    for (std::int32_t col = 4; col <= 6; ++col) {
        Thicken(*layer, col, 2, 0.25f);
    }
    const LayerMesh mesh = MakeLayerMesh(*layer, 2, 2);
    // Quads from column 3 to 7: four of them between five feet and five heads
    EXPECT_EQ(CountWallVertices(mesh), 10u);
    std::size_t wallIndices = 0;
    for (const std::uint32_t index : mesh.indices) {
        wallIndices += IsWallVertex(mesh.vertices[index]) ? 1 : 0;
    }
    EXPECT_EQ(wallIndices, 4u * 6u);
    for (const MeshVertex& vertex : mesh.vertices) {
        if (IsWallVertex(vertex)) {
            EXPECT_EQ(vertex.position[1], 0.0f);
            EXPECT_GE(vertex.position[0], 1.0f);
            EXPECT_LE(vertex.position[0], 5.0f);
        }
    }
}

TEST(LayerMesh, MaterialBehindTheFrontRowGetsNoWall) {
    const auto layer = MakeLayer(9, 12, 1.0f, 1.0f);
    Thicken(*layer, 5, 3, 0.25f);
    Thicken(*layer, 5, 1, 0.25f);  // in the margin, in front of the window
    const LayerMesh mesh = MakeLayerMesh(*layer, 2, 2);
    EXPECT_FALSE(mesh.indices.empty());
    EXPECT_EQ(CountWallVertices(mesh), 0u);
}

TEST(LayerMesh, AThicknessThatIsNoNumberCountsAsMaterial) {
    const auto layer = MakeLayer(7, 7, 1.0f, 2.0f);
    layer->top[24] = notANumber;
    EXPECT_EQ(MakeLayerMesh(*layer, 1, 1).indices.size(), 36u);
    layer->top[24] = infinity;
    layer->bottom[24] = infinity;
    EXPECT_EQ(MakeLayerMesh(*layer, 1, 1).indices.size(), 36u);
}

TEST(LayerMesh, TheSmallestThicknessCounts) {
    const auto layer = MakeLayer(7, 7, 1.0f, 0.0f);
    layer->top[24] = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(MakeLayerMesh(*layer, 1, 1).indices.size(), 36u);
    layer->top[24] = -0.0f;
    EXPECT_TRUE(MakeLayerMesh(*layer, 1, 1).indices.empty());
}

// Normals

TEST(LayerMesh, FlatNormalsCountTheSquaresAroundAVertex) {
    constexpr float s = 0.5f;
    const auto layer = MakeLayer(9, 9, s, 1.0f);
    layer->top.assign(layer->top.size(), 2.0f);
    const LayerMesh mesh = MakeLayerMesh(*layer, 2, 2);
    const auto normalZ = [&](float col, float row) {
        const MeshVertex* vertex = FindVertex(mesh, col * s, row * s, 2.0f);
        EXPECT_NE(vertex, nullptr);
        EXPECT_EQ(vertex->normal[0], 0.0f);
        EXPECT_EQ(vertex->normal[1], 0.0f);
        return vertex->normal[2];
    };
    EXPECT_EQ(normalZ(2, 2), 8.0f * s * s);
    EXPECT_EQ(normalZ(0, 2), 4.0f * s * s);
    EXPECT_EQ(normalZ(2, 0), 4.0f * s * s);
    EXPECT_EQ(normalZ(0, 0), 2.0f * s * s);
    // Toward the right and the back the fan reaches into the margin.
    EXPECT_EQ(normalZ(4, 2), 8.0f * s * s);
    EXPECT_EQ(normalZ(2, 4), 8.0f * s * s);
    EXPECT_EQ(normalZ(4, 4), 8.0f * s * s);
}

TEST(LayerMesh, WithoutAMarginTheFanEndsAtTheGridsEdge) {
    const auto layer = MakeLayer(4, 5, 1.0f, 1.0f);
    layer->top.assign(layer->top.size(), 2.0f);
    const LayerMesh mesh = MakeLayerMesh(*layer, 0, 0);
    EXPECT_EQ(FindVertex(mesh, 4.0f, 2.0f, 2.0f)->normal[2], 4.0f);
    EXPECT_EQ(FindVertex(mesh, 2.0f, 3.0f, 2.0f)->normal[2], 4.0f);
    EXPECT_EQ(FindVertex(mesh, 4.0f, 3.0f, 2.0f)->normal[2], 2.0f);
}

TEST(LayerMesh, TheLowerSheetHasTheInvertedNormalsOfTheUpperSurface) {
    const auto layer = MakeLayer(6, 6, 1.0f, 0.0f);
    for (std::size_t i = 0; i < layer->top.size(); ++i) {
        layer->top[i] = 5.0f + 0.5f * static_cast<float>(i % 6);
        layer->bottom[i] = static_cast<float>(i / 6);
    }
    const LayerMesh mesh = MakeLayerMesh(*layer, 1, 1);
    const MeshVertex* upper = FindVertex(mesh, 2.0f, 2.0f, 6.5f);
    const MeshVertex* lower = FindVertex(mesh, 2.0f, 2.0f, 3.0f);
    ASSERT_NE(upper, nullptr);
    ASSERT_NE(lower, nullptr);
    EXPECT_EQ(upper->normal[0], -4.0f);
    EXPECT_EQ(upper->normal[1], 0.0f);
    EXPECT_EQ(upper->normal[2], 8.0f);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(lower->normal[axis], -upper->normal[axis]);
    }
}

// Windows of odd sizes

TEST(LayerMesh, AWindowOneRowHighHasAWallAlone) {
    const auto layer = MakeLayer(1, 6, 1.0f, 0.0f);
    layer->top.assign(6, 1.0f);
    const LayerMesh mesh = MakeLayerMesh(*layer, 1, 0);
    EXPECT_EQ(mesh.indices.size(), 3u * 6u);
    EXPECT_EQ(CountWallVertices(mesh), mesh.vertices.size());
}

TEST(LayerMesh, AWindowOfOneColumnOrNoneHasNoMesh) {
    const auto layer = MakeLayer(6, 5, 1.0f, 0.0f);
    layer->top.assign(layer->top.size(), 1.0f);
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const std::vector<std::array<std::int32_t, 2>> margins = {
        {2, 0}, {3, 0}, {0, 3}, {4, 4}, {most, 0}, {0, most}, {most, most}};
    for (const auto& [marginCols, marginRows] : margins) {
        EXPECT_TRUE(MakeLayerMesh(*layer, marginCols, marginRows).indices.empty());
    }
}

TEST(LayerMesh, AMarginBelowNothingCountsAsNone) {
    const auto layer = MakeLayer(3, 4, 1.0f, 0.0f);
    layer->top.assign(layer->top.size(), 1.0f);
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(MakeLayerMesh(*layer, least, least).indices, MakeLayerMesh(*layer, 0, 0).indices);
    EXPECT_EQ(MakeLayerMesh(*layer, -1, -1).indices, MakeLayerMesh(*layer, 0, 0).indices);
}

// Comparison with the literal version

void ExpectSameBits(float fast, float plain, bool zeroMayCarryEitherSign) {
    const bool bothZero = zeroMayCarryEitherSign && fast == 0.0f && plain == 0.0f;
    const bool bothNotANumber = std::isnan(fast) && std::isnan(plain);
    EXPECT_TRUE(bothZero || bothNotANumber ||
                std::bit_cast<std::uint32_t>(fast) == std::bit_cast<std::uint32_t>(plain))
        << fast << " " << plain;
}

void ExpectSameMesh(const LayerMesh& fast, const LayerMesh& plain) {
    ASSERT_EQ(fast.indices, plain.indices);
    ASSERT_EQ(fast.vertices.size(), plain.vertices.size());
    for (std::size_t i = 0; i < plain.vertices.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            ExpectSameBits(fast.vertices[i].position[axis], plain.vertices[i].position[axis],
                           false);
            ExpectSameBits(fast.vertices[i].normal[axis], plain.vertices[i].normal[axis], true);
        }
    }
}

struct RandomLayerMix {
    double emptyShare;  ///< of patches of 3 by 3 cells
    double oddShare;    ///< of cells with NaN or infinite heights
};

std::unique_ptr<Layer> MakeRandomLayer(std::mt19937& random, RandomLayerMix mix) {
    const auto number = [&](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    const auto unit = [&] { return static_cast<float>(random() >> 8) / 16777216.0f; };
    // Now and then enough rows to be shared out among threads.
    const int rows = number(1, number(0, 4) == 0 ? 150 : 30);
    auto layer = MakeLayer(rows, number(1, 30), 0.01f + unit(), 0.0f);
    std::vector<bool> empty(500);
    for (std::size_t i = 0; i < empty.size(); ++i) {
        empty[i] = unit() < mix.emptyShare;
    }
    for (std::int32_t row = 0; row < layer->rows; ++row) {
        for (std::int32_t col = 0; col < layer->cols; ++col) {
            const auto i = static_cast<std::size_t>(row * layer->cols + col);
            layer->bottom[i] = unit() * 3.0f - 1.0f;
            layer->top[i] = layer->bottom[i];
            if (!empty[static_cast<std::size_t>(row / 3 * 10 + col / 3)]) {
                layer->top[i] += unit();
            }
            if (unit() < mix.oddShare) {
                const float odd[] = {notANumber, infinity, -infinity, -0.0f};
                layer->top[i] = odd[number(0, 3)];
                layer->bottom[i] = number(0, 1) == 0 ? layer->top[i] : odd[number(0, 3)];
            }
        }
    }
    return layer;
}

void CompareRandomLayers(RandomLayerMix mix) {
    std::mt19937 random(20240611);
    const auto runs = static_cast<int>(CaseCount(150));
    for (int run = 0; run < runs && !::testing::Test::HasFailure(); ++run) {
        AllowWideLanes(run % 2 == 0);
        SetRowThreads(1 + run % 3);
        const auto layer = MakeRandomLayer(random, mix);
        const auto marginCols =
            static_cast<std::int32_t>(random() % static_cast<unsigned>((layer->cols + 1) / 2));
        const auto marginRows =
            static_cast<std::int32_t>(random() % static_cast<unsigned>((layer->rows + 1) / 2));
        SCOPED_TRACE(run);
        ExpectSameMesh(MakeLayerMesh(*layer, marginCols, marginRows),
                       MakeLayerMeshPlain(*layer, marginCols, marginRows));
    }
    AllowWideLanes(true);
    SetRowThreads(0);
}

TEST(LayerMeshAgainstPlain, FullLayers) {
    CompareRandomLayers({0.0, 0.0});
}

TEST(LayerMeshAgainstPlain, LayersWithHoles) {
    CompareRandomLayers({0.5, 0.0});
}

TEST(LayerMeshAgainstPlain, LayersWithFewIslands) {
    CompareRandomLayers({0.95, 0.0});
}

TEST(LayerMeshAgainstPlain, HeightsThatAreNoNumbers) {
    CompareRandomLayers({0.3, 0.1});
}

}  // namespace
}  // namespace zelmo
