#include "model/grid/grid_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "model/process_model.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

void SizeFor(ProcessModel& model, std::int32_t columns, float width, float height) {
    model.gridColumns = columns;
    model.windowWidth = width;
    model.windowHeight = height;
    SizeGrid(model);
}

TEST(GridGeometry, CoversTheWindowAndATenthOnEachSide) {
    ProcessModel model;
    model.windowX = 20.0f;
    model.windowY = -5.0f;
    SizeFor(model, 1000, 100.0f, 50.0f);
    EXPECT_EQ(model.gridOriginX, 10.0f);
    EXPECT_EQ(model.gridOriginY, -10.0f);
    EXPECT_EQ(model.gridWidth, 0x1.e00002p+6f) << "the single-precision 1.2 is above 1.2";
    EXPECT_EQ(model.marginX, 10.0f);
    EXPECT_EQ(model.marginY, 5.0f);
}

TEST(GridGeometry, RoundsHalfARowUp) {
    // 60 / (120 / 999) is 499.5
    ProcessModel model;
    SizeFor(model, 1000, 100.0f, 50.0f);
    EXPECT_FLOAT_EQ(model.gridSpacing, 120.0f / 999.0f);
    EXPECT_EQ(model.gridRows, 501);
    EXPECT_EQ(model.gridHeight, 500.0f * model.gridSpacing);
}

TEST(GridGeometry, SquareWindowGivesAsManyRowsAsColumns) {
    TestRandom random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::int32_t columns = 200 + static_cast<std::int32_t>(random.Below(1801));
        const float width =
            std::ldexp(0.5f + random.Unit(), static_cast<int>(random.Below(30)) - 10);
        ProcessModel model;
        SizeFor(model, columns, width, width);
        ASSERT_EQ(model.gridRows, columns) << width;
    }
}

TEST(GridGeometry, NeverHasMoreRowsThanColumns) {
    TestRandom random(2);
    for (int i = 0; i < 20000; ++i) {
        const std::int32_t columns = 200 + static_cast<std::int32_t>(random.Below(1801));
        const float width = 0.1f + 500.0f * random.Unit();
        ProcessModel model;
        SizeFor(model, columns, width, width * random.Unit());
        ASSERT_LE(model.gridRows, columns);
        ASSERT_GE(model.gridRows, 1);
    }
}

TEST(GridGeometry, VeryFlatWindowHasOneRowWithoutHeight) {
    ProcessModel model;
    SizeFor(model, 200, 100.0f, 0.1f);
    EXPECT_EQ(model.gridRows, 1);
    EXPECT_EQ(model.gridHeight, 0.0f);
}

TEST(GridGeometry, RoundsEveryOperationToSinglePrecision) {
    ProcessModel model;
    model.windowX = 1234.567f;
    model.windowY = 0.3f;
    SizeFor(model, 777, 33.3f, 7.7f);
    EXPECT_EQ(model.gridOriginX, 0x1.33cf2cp+10f);
    EXPECT_EQ(model.gridOriginY, -0x1.e147acp-2f);
    EXPECT_EQ(model.gridWidth, 0x1.3fae14p+5f);
    EXPECT_EQ(model.gridSpacing, 0x1.a5d884p-5f);
    EXPECT_EQ(model.gridRows, 180);
    EXPECT_EQ(model.gridHeight, 0x1.26f664p+3f);
    EXPECT_EQ(model.marginX, 0x1.aa3cp+1f);
    EXPECT_EQ(model.marginY, 0x1.8a3d7p-1f);
}

TEST(GridGeometry, TheTenthIsASinglePrecisionConstantAndItsProductIsRounded) {
    ProcessModel model;
    model.windowX = 53.4f;
    model.windowY = 71.5f;
    SizeFor(model, 200, 346.0f, 293.0f);
    EXPECT_EQ(model.gridOriginX, 0x1.2cccccp+4f);
    EXPECT_EQ(model.gridOriginY, 0x1.519998p+5f);
}

TEST(GridGeometry, StrangeWindowsAreSizedWithoutOverflow) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::int32_t noRows = std::numeric_limits<std::int32_t>::min() + 1;
    const float windows[][2] = {
        {0.0f, 0.0f}, {nan, 1.0f}, {1.0f, nan}, {1.0f, infinity}, {1e-45f, 1.0f}};
    for (const auto& window : windows) {
        ProcessModel model;
        SizeFor(model, 200, window[0], window[1]);
        EXPECT_EQ(model.gridRows, noRows) << window[0] << " x " << window[1];
    }
    ProcessModel single;
    SizeFor(single, 1, 1.0f, 1.0f);
    EXPECT_EQ(single.gridSpacing, infinity);
    EXPECT_EQ(single.gridRows, 1);
}

}  // namespace
}  // namespace zelmo
