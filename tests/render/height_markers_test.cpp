#include "model/height_markers.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "model/execute_step.h"
#include "model/grid/grid.h"
#include "tests/model/call_log_graphics.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

/// A model over a window, as a run has it before its first step; without its tables.
void SetUpWindow(ProcessModel& model, std::int32_t columns, float width, float height) {
    model.grid.columns = columns;
    model.settings.windowWidth = width;
    model.settings.windowHeight = height;
    SizeGrid(model);
    model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{});
    InitHeightMarkers(model);
}

TEST(HeightMarkers, CopyTheGridAndCountTheirRows) {
    ProcessModel model;
    SetUpWindow(model, 400, 86.0f, 60.0f);
    const HeightMarkers& markers = model.heightMarkers;
    EXPECT_EQ(markers.marginX, model.grid.marginX);
    EXPECT_EQ(markers.marginY, model.grid.marginY);
    EXPECT_EQ(markers.cover, model.stack.coverMap.data());
    EXPECT_EQ(markers.columns, 400);
    EXPECT_EQ(markers.spacing, model.grid.spacing);
    EXPECT_EQ(model.grid.rows, 279);
    EXPECT_EQ(markers.rowCount, 6U);
    EXPECT_EQ(markers.vertexCount, 60U);
    EXPECT_EQ(markers.vertices.size(), 60U);
    EXPECT_EQ(markers.pitch,
              (400.0f - (model.grid.marginX + model.grid.marginX) / model.grid.spacing) / 9.0f);
}

TEST(HeightMarkers, SquareWindowHasTenRows) {
    for (const std::int32_t columns : {200, 333, 400, 1000, 1999, 2000}) {
        ProcessModel model;
        SetUpWindow(model, columns, 10.0f, 10.0f);
        EXPECT_EQ(model.heightMarkers.rowCount, 10U) << columns;
    }
}

TEST(HeightMarkers, NoRowsWhereTheGridIsFlatterThanATenth) {
    for (const float height : {0.01f, 5.0f, 9.8f}) {
        ProcessModel model;
        SetUpWindow(model, 400, 100.0f, height);
        EXPECT_EQ(model.heightMarkers.rowCount, 0U) << height;
        EXPECT_EQ(model.heightMarkers.vertexCount, 0U);
        EXPECT_TRUE(model.heightMarkers.vertices.empty());
        UpdateHeightMarkers(model.heightMarkers);
        EXPECT_TRUE(model.heightMarkers.vertices.empty());
    }
    ProcessModel model;
    SetUpWindow(model, 401, 100.0f, 10.0f);
    EXPECT_EQ(model.heightMarkers.rowCount, 1U);
}

TEST(HeightMarkers, StandEvenlyOverTheWindowAtTheCoversHeight) {
    ProcessModel model;
    SetUpWindow(model, 400, 86.0f, 60.0f);
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            model.stack.coverMap[CellAt(model, col, row)].height =
                static_cast<float>(row * 1000 + col);
        }
    }
    UpdateHeightMarkers(model.heightMarkers);
    const HeightMarkers& markers = model.heightMarkers;
    for (std::uint32_t j = 0; j < markers.rowCount; ++j) {
        for (std::uint32_t i = 0; i < 10; ++i) {
            const MarkerVertex& vertex = markers.vertices[j * 10 + i];
            const auto column = static_cast<float>(i);
            const auto row = static_cast<float>(j);
            EXPECT_EQ(vertex.position[0], column * markers.spacing * markers.pitch);
            EXPECT_EQ(vertex.position[1], row * markers.spacing * markers.pitch);
            const auto x =
                static_cast<int>(markers.marginX / markers.spacing + markers.pitch * column);
            const auto y =
                static_cast<int>(markers.marginY / markers.spacing + markers.pitch * row);
            EXPECT_EQ(vertex.position[2], static_cast<float>(y * 1000 + x));
            EXPECT_EQ(vertex.normal[0], 0.0f);
            EXPECT_EQ(vertex.normal[1], 0.0f);
            EXPECT_EQ(vertex.normal[2], 0.0f);
            EXPECT_EQ(vertex.weight, 0.95f);
        }
    }
    EXPECT_FLOAT_EQ(markers.vertices[9].position[0], 400.0f / 399.0f * 103.2f - 2 * 8.6f);
}

TEST(HeightMarkers, KnownMarkersOnASubstrate) {
    ProcessModel model;
    model.settings.windowY = 2.0f;
    SetUpWindow(model, 400, 86.0f, 86.0f);
    EXPECT_EQ(model.grid.spacing, 0x1.08daaap-2f);
    ProcessStep substrate;
    substrate.kind = StepKind::Substrate;
    ExecuteStep(model, substrate, nullptr);
    UpdateHeightMarkers(model.heightMarkers);
    WordHash hash;
    for (const MarkerVertex& vertex : model.heightMarkers.vertices) {
        for (const float value : vertex.position) {
            hash.Take(value);
        }
        for (const float value : vertex.normal) {
            hash.Take(value);
        }
        hash.Take(vertex.weight);
    }
    EXPECT_EQ(hash.Value(), 0x37ad0d2ab7a8489fULL);
}

TEST(HeightMarkers, AreMadeOnceAndUploadedAtEveryUpdate) {
    CallLogGraphics graphics;
    ProcessModel model;
    model.graphics = &graphics;
    SetUpWindow(model, 200, 10.0f, 10.0f);
    EXPECT_EQ(graphics.calls, (std::vector<std::string>{"create markers"}));
    model.stack.coverMap.assign(model.grid.CellCount(), {0, 1.5f});
    UpdateHeightMarkers(model.heightMarkers);
    EXPECT_EQ(graphics.calls, (std::vector<std::string>{"create markers", "upload markers"}));
    ASSERT_EQ(graphics.uploadedMarkers.size(), 100U);
    EXPECT_EQ(graphics.uploadedMarkers[99].position[2], 1.5f);
}

TEST(HeightMarkers, WhoseObjectsFailAreReleased) {
    CallLogGraphics graphics;
    graphics.failCreation = true;
    {
        ProcessModel model;
        model.graphics = &graphics;
        EXPECT_THROW(SetUpWindow(model, 200, 10.0f, 10.0f), std::bad_alloc);
    }
    EXPECT_EQ(graphics.calls, (std::vector<std::string>{"create markers", "destroy markers"}));
}

TEST(HeightMarkers, StrangeMarginsStayInsideTheCover) {
    const float strange[] = {0.0f, -5.0f, 1e30f, -1e30f, 3e9f, nan, infinity, -infinity};
    for (const float marginX : strange) {
        for (const float marginY : strange) {
            ProcessModel model;
            SetUpWindow(model, 200, 10.0f, 10.0f);
            model.stack.coverMap.assign(model.grid.CellCount(), {0, 1.5f});
            model.grid.marginX = marginX;
            model.grid.marginY = marginY;
            InitHeightMarkers(model);
            UpdateHeightMarkers(model.heightMarkers);
            for (const MarkerVertex& vertex : model.heightMarkers.vertices) {
                ASSERT_EQ(vertex.position[2], 1.5f);
            }
        }
    }
}

TEST(HeightMarkers, GridWithoutCellsHasNoHeights) {
    ProcessModel model;
    InitHeightMarkers(model);
    UpdateHeightMarkers(model.heightMarkers);
    for (const MarkerVertex& vertex : model.heightMarkers.vertices) {
        EXPECT_EQ(vertex.position[2], 0.0f);
    }
}

TEST(HeightMarkers, SingleCellHasNone) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    InitHeightMarkers(model);
    UpdateHeightMarkers(model.heightMarkers);
    EXPECT_EQ(model.heightMarkers.vertexCount, 0U);
}

}  // namespace
}  // namespace zelmo
