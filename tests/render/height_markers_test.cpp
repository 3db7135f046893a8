#include "render/height_markers.h"

#include <gtest/gtest.h>

#include "model/execute_step.h"
#include "model/grid/grid.h"
#include "tests/model/grid_model.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

/// A model over a window, as a run has it before its first step; without its tables.
void SetUpWindow(ProcessModel& model, std::int32_t columns, float width, float height) {
    model.settings.gridColumns = columns;
    model.settings.windowWidth = width;
    model.settings.windowHeight = height;
    SizeGrid(model.grid, model.settings);
    model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{});
}

HeightMarkers MarkersOf(const ProcessModel& model) {
    return SampleHeightMarkers(model.grid, model.stack.coverMap);
}

TEST(HeightMarkers, CountTheirRowsAndFindTheirPitch) {
    ProcessModel model;
    SetUpWindow(model, 400, 86.0f, 60.0f);
    const HeightMarkers markers = MarkersOf(model);
    EXPECT_EQ(model.grid.rows, 279);
    EXPECT_EQ(markers.rowCount, 6U);
    EXPECT_EQ(markers.vertices.size(), 60U);
    EXPECT_EQ(markers.pitch,
              (400.0f - (model.grid.marginX + model.grid.marginX) / model.grid.spacing) / 9.0f);
}

TEST(HeightMarkers, SquareWindowHasTenRows) {
    for (const std::int32_t columns : {200, 333, 400, 1000, 1999, 2000}) {
        ProcessModel model;
        SetUpWindow(model, columns, 10.0f, 10.0f);
        EXPECT_EQ(MarkersOf(model).rowCount, 10U) << columns;
    }
}

TEST(HeightMarkers, NoRowsWhereTheGridIsFlatterThanATenth) {
    for (const float height : {0.01f, 5.0f, 9.8f}) {
        ProcessModel model;
        SetUpWindow(model, 400, 100.0f, height);
        EXPECT_EQ(MarkersOf(model).rowCount, 0U) << height;
        EXPECT_TRUE(MarkersOf(model).vertices.empty());
    }
    ProcessModel model;
    SetUpWindow(model, 401, 100.0f, 10.0f);
    EXPECT_EQ(MarkersOf(model).rowCount, 1U);
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
    const HeightMarkers markers = MarkersOf(model);
    for (std::uint32_t j = 0; j < markers.rowCount; ++j) {
        for (std::uint32_t i = 0; i < 10; ++i) {
            const MarkerVertex& vertex = markers.vertices[j * 10 + i];
            const auto column = static_cast<float>(i);
            const auto row = static_cast<float>(j);
            EXPECT_EQ(vertex.position[0], column * model.grid.spacing * markers.pitch);
            EXPECT_EQ(vertex.position[1], row * model.grid.spacing * markers.pitch);
            const auto x =
                static_cast<int>(model.grid.marginX / model.grid.spacing + markers.pitch * column);
            const auto y =
                static_cast<int>(model.grid.marginY / model.grid.spacing + markers.pitch * row);
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
    WordHash hash;
    const HeightMarkers markers = MarkersOf(model);
    for (const MarkerVertex& vertex : markers.vertices) {
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

TEST(HeightMarkers, StrangeMarginsStayInsideTheCover) {
    const float strange[] = {0.0f, -5.0f, 1e30f, -1e30f, 3e9f, nan, infinity, -infinity};
    for (const float marginX : strange) {
        for (const float marginY : strange) {
            ProcessModel model;
            SetUpWindow(model, 200, 10.0f, 10.0f);
            model.stack.coverMap.assign(model.grid.CellCount(), {0, 1.5f});
            model.grid.marginX = marginX;
            model.grid.marginY = marginY;
            const HeightMarkers markers = MarkersOf(model);
            for (const MarkerVertex& vertex : markers.vertices) {
                ASSERT_EQ(vertex.position[2], 1.5f);
            }
        }
    }
}

TEST(HeightMarkers, GridWithoutCellsHasNoHeights) {
    ProcessModel model;
    const HeightMarkers markers = MarkersOf(model);
    for (const MarkerVertex& vertex : markers.vertices) {
        EXPECT_EQ(vertex.position[2], 0.0f);
    }
}

TEST(HeightMarkers, SingleCellHasNone) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    EXPECT_TRUE(MarkersOf(model).vertices.empty());
}

}  // namespace
}  // namespace zelmo
