#include "process_run/foreign_stack.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "model/grid/grid.h"
#include "model/stack.h"

namespace zelmo {
namespace {

class ForeignStackTest : public testing::Test {
protected:
    ForeignStackTest() {
        grid_.columns = 3;
        grid_.rows = 2;
        stack_.layers.push_back(CreateLayer(grid_));
        stack_.layers.push_back(nullptr);
        stack_.coverMap.assign(grid_.CellCount(), CoverCell{});
    }
    std::string Why() const { return WhyNoStack(stack_, grid_); }

    Grid grid_;
    Stack stack_;
};

TEST_F(ForeignStackTest, OneWithAllPartsIsFine) {
    EXPECT_EQ(Why(), "");
}

TEST_F(ForeignStackTest, NeedsASubstrate) {
    stack_.layers[0].reset();
    EXPECT_EQ(Why(), "it has no substrate");
    stack_.layers.clear();
    EXPECT_EQ(Why(), "it has no substrate");
}

TEST_F(ForeignStackTest, NeedsArraysOfTheGridsSize) {
    stack_.layers[0]->bottom.assign(5, 0.0f);
    EXPECT_EQ(Why(), "a surface of layer 1 has 5 cells and the grid 6");
    stack_.layers[0]->bottom.assign(6, 0.0f);
    stack_.coverMap.assign(7, CoverCell{});
    EXPECT_EQ(Why(), "its cover map has 7 cells and the grid 6");
}

TEST_F(ForeignStackTest, NeedsHeightsThatAreNumbers) {
    stack_.layers[0]->top[5] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(Why(), "a surface of layer 1 has heights that are no numbers");
    stack_.layers[0]->top[5] = 0.0f;
    stack_.substrateThickness = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Why(), "its substrate has no thickness");
}

TEST_F(ForeignStackTest, NeedsACoverOfLayersThatAreThere) {
    for (const std::int32_t id : {-1, 1, 2}) {
        stack_.coverMap[3] = {id, 0.0f};
        EXPECT_EQ(Why(), "its cover map names layers that are not there");
    }
    stack_.coverMap[3] = {0, std::numeric_limits<float>::infinity()};
    EXPECT_EQ(Why(), "its cover map names layers that are not there");
}

}  // namespace
}  // namespace zelmo
