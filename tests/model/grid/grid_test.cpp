#include "model/grid/grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "model/process_model.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

void SizeFor(ProcessModel& model, std::int32_t columns, float width, float height) {
    model.settings.gridColumns = columns;
    model.settings.windowWidth = width;
    model.settings.windowHeight = height;
    SizeGrid(model.grid, model.settings);
}

TEST(SizeGrid, CoversTheWindowAndATenthOnEachSide) {
    ProcessModel model;
    model.settings.windowX = 20.0f;
    model.settings.windowY = -5.0f;
    SizeFor(model, 1000, 100.0f, 50.0f);
    EXPECT_EQ(model.grid.originX, 10.0f);
    EXPECT_EQ(model.grid.originY, -10.0f);
    EXPECT_EQ(model.grid.width, 0x1.e00002p+6f) << "the single-precision 1.2 is above 1.2";
    EXPECT_EQ(model.grid.marginX, 10.0f);
    EXPECT_EQ(model.grid.marginY, 5.0f);
}

TEST(SizeGrid, RoundsHalfARowUp) {
    // 60 / (120 / 999) is 499.5
    ProcessModel model;
    SizeFor(model, 1000, 100.0f, 50.0f);
    EXPECT_FLOAT_EQ(model.grid.spacing, 120.0f / 999.0f);
    EXPECT_EQ(model.grid.rows, 501);
    EXPECT_EQ(model.grid.height, 500.0f * model.grid.spacing);
}

TEST(SizeGrid, SquareWindowGivesAsManyRowsAsColumns) {
    TestRandom random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::int32_t columns = 200 + static_cast<std::int32_t>(random.Below(1801));
        const float width =
            std::ldexp(0.5f + random.Unit(), static_cast<int>(random.Below(30)) - 10);
        ProcessModel model;
        SizeFor(model, columns, width, width);
        ASSERT_EQ(model.grid.rows, columns) << width;
    }
}

TEST(SizeGrid, NeverHasMoreRowsThanColumns) {
    TestRandom random(2);
    for (int i = 0; i < 20000; ++i) {
        const std::int32_t columns = 200 + static_cast<std::int32_t>(random.Below(1801));
        const float width = 0.1f + 500.0f * random.Unit();
        ProcessModel model;
        SizeFor(model, columns, width, width * random.Unit());
        ASSERT_LE(model.grid.rows, columns);
        ASSERT_GE(model.grid.rows, 1);
    }
}

TEST(SizeGrid, VeryFlatWindowHasOneRowWithoutHeight) {
    ProcessModel model;
    SizeFor(model, 200, 100.0f, 0.1f);
    EXPECT_EQ(model.grid.rows, 1);
    EXPECT_EQ(model.grid.height, 0.0f);
}

TEST(SizeGrid, RoundsEveryOperationToSinglePrecision) {
    ProcessModel model;
    model.settings.windowX = 1234.567f;
    model.settings.windowY = 0.3f;
    SizeFor(model, 777, 33.3f, 7.7f);
    EXPECT_EQ(model.grid.originX, 0x1.33cf2cp+10f);
    EXPECT_EQ(model.grid.originY, -0x1.e147acp-2f);
    EXPECT_EQ(model.grid.width, 0x1.3fae14p+5f);
    EXPECT_EQ(model.grid.spacing, 0x1.a5d884p-5f);
    EXPECT_EQ(model.grid.rows, 180);
    EXPECT_EQ(model.grid.height, 0x1.26f664p+3f);
    EXPECT_EQ(model.grid.marginX, 0x1.aa3cp+1f);
    EXPECT_EQ(model.grid.marginY, 0x1.8a3d7p-1f);
}

TEST(SizeGrid, TheTenthIsASinglePrecisionConstantAndItsProductIsRounded) {
    ProcessModel model;
    model.settings.windowX = 53.4f;
    model.settings.windowY = 71.5f;
    SizeFor(model, 200, 346.0f, 293.0f);
    EXPECT_EQ(model.grid.originX, 0x1.2cccccp+4f);
    EXPECT_EQ(model.grid.originY, 0x1.519998p+5f);
}

TEST(SizeGrid, StrangeWindowsAreSizedWithoutOverflow) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::int32_t noRows = std::numeric_limits<std::int32_t>::min() + 1;
    const float windows[][2] = {
        {0.0f, 0.0f}, {nan, 1.0f}, {1.0f, nan}, {1.0f, infinity}, {1e-45f, 1.0f}};
    for (const auto& window : windows) {
        ProcessModel model;
        SizeFor(model, 200, window[0], window[1]);
        EXPECT_EQ(model.grid.rows, noRows) << window[0] << " x " << window[1];
    }
    ProcessModel single;
    SizeFor(single, 1, 1.0f, 1.0f);
    EXPECT_EQ(single.grid.spacing, infinity);
    EXPECT_EQ(single.grid.rows, 1);
}

}  // namespace
}  // namespace zelmo
