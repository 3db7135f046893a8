#include "render/mesh/side_walls.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "model/grid/shown_window.h"
#include "tests/render/made_stack.h"

namespace zelmo {
namespace {

class SideWalls : public testing::Test {
protected:
    SideWalls() : model_(MakeEmptyModel(8.0f, 6.0f, 21)) {
        layer_ = &AddFilm(*model_, 1.0f, {});
        window_ = FindShownWindow(model_->grid);
    }

    LayerMesh Make(const WindowSides& sides) const {
        return MakeSideWalls(*layer_, window_.marginCols, window_.marginRows, sides);
    }
    float X(std::int32_t col) const { return static_cast<float>(col) * model_->grid.spacing; }

    std::unique_ptr<ProcessModel> model_;
    Layer* layer_ = nullptr;
    ShownWindow window_;
};

double AreaOf(const LayerMesh& mesh) {
    double area = 0.0;
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
        const auto at = [&](std::size_t corner, std::size_t axis) {
            return static_cast<double>(mesh.vertices[mesh.indices[i + corner]].position[axis]);
        };
        double cross = 0.0;
        for (std::size_t a = 0; a < 3; ++a) {
            const std::size_t b = (a + 1) % 3;
            const std::size_t c = (a + 2) % 3;
            const double n = (at(1, b) - at(0, b)) * (at(2, c) - at(0, c)) -
                             (at(1, c) - at(0, c)) * (at(2, b) - at(0, b));
            cross += n * n;
        }
        area += std::sqrt(cross) / 2.0;
    }
    return area;
}

TEST_F(SideWalls, CoverASideFromTheLowerToTheUpperSurface) {
    const float right = X(window_.cols - 1);
    const float back = X(window_.rows - 1);
    for (const auto& [sides, area] : {std::pair{WindowSides{true, false, false}, back},
                                      {{false, true, false}, back},
                                      {{false, false, true}, right}}) {
        const LayerMesh mesh = Make(sides);
        EXPECT_NEAR(AreaOf(mesh), static_cast<double>(area), 1e-4);
        for (const MeshVertex& vertex : mesh.vertices) {
            EXPECT_EQ(vertex.normal[2], 0.0f);
            if (sides.back) {
                EXPECT_EQ(vertex.position[1], back);
                EXPECT_EQ(vertex.normal[1], 1.0f);
            } else {
                EXPECT_EQ(vertex.position[0], sides.right ? right : 0.0f);
                EXPECT_EQ(vertex.normal[0], sides.right ? 1.0f : -1.0f);
            }
        }
    }
}

TEST_F(SideWalls, StandOnlyWhereTheLayerExists) {
    for (std::int32_t row = 0; row < window_.rows; ++row) {
        const std::size_t cell = window_.GridIndex(window_.cols - 1, row);
        if (row != 3) {
            layer_->top[cell] = layer_->bottom[cell];
        }
    }
    // Two pieces rise from nothing to the one place and fall again.
    EXPECT_EQ(Make({false, true, false}).indices.size(), 12u);
    EXPECT_NEAR(AreaOf(Make({false, true, false})), static_cast<double>(X(1)), 1e-4);
}

TEST_F(SideWalls, AreNoneWithoutSides) {
    EXPECT_TRUE(Make({}).indices.empty());
    EXPECT_FALSE(WindowSides{}.Any());
}

TEST_F(SideWalls, AddUp) {
    EXPECT_EQ(Make({true, true, true}).indices.size(),
              Make({true, false, false}).indices.size() +
                  Make({false, true, false}).indices.size() +
                  Make({false, false, true}).indices.size());
}

}  // namespace
}  // namespace zelmo
