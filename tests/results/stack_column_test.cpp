#include "results/stack_column.h"

#include <fmt/format.h>

#include <gtest/gtest.h>

#include "results/drawn_point.h"
#include "tests/results/random_stack.h"

namespace zelmo {
namespace {

/// A substrate of 0.5 um on a grid of 5 by 5 cells.
ProcessModel MakeModel() {
    ProcessModel model;
    SetUpGrid(model, 5, 5, 0.1f);
    model.stack.substrateThickness = 0.5f;
    AppendFlatLayer(model, 0.0f, 0.5f, "_SUB_").label = "SUBSTRATE";
    return model;
}

std::string TextOfColumn(const std::vector<ColumnPart>& column) {
    std::string text;
    for (const ColumnPart& part : column) {
        text +=
            (part.layer ? fmt::format("{}{}", part.layer->number, part.layer->material) : "gap") +
            " " + NanometresText(part.from) + " " + NanometresText(part.to) + "; ";
    }
    return text;
}

TEST(ReadStackColumn, TellsTheUppermostFirstAboveTheSubstrate) {
    ProcessModel model = MakeModel();
    AppendFlatLayer(model, 0.5f, 0.25f, "Oxide");
    EXPECT_EQ(TextOfColumn(ReadStackColumn(model, {2, 2})),
              "2Oxide 0.000 250.000; 1_SUB_ -500.000 0.000; ");
}

TEST(ReadStackColumn, EmptyRoomIsAGapAndEmptySlotsAreNothing) {
    ProcessModel model = MakeModel();
    AppendFlatLayer(model, 0.5f, 0.25f, "Oxide");
    AppendFlatLayer(model, 0.75f, 0.125f, "Beam");
    model.stack.layers[1].reset();
    EXPECT_EQ(TextOfColumn(ReadStackColumn(model, {2, 2})),
              "3Beam 250.000 375.000; gap 0.000 250.000; 1_SUB_ -500.000 0.000; ");
}

TEST(ReadStackColumn, LayersOfNoThicknessAreNotThere) {
    ProcessModel model = MakeModel();
    Layer& oxide = AppendFlatLayer(model, 0.5f, 0.25f, "Oxide");
    oxide.top[CellAt(model, 2, 2)] = 0.5f;
    EXPECT_EQ(TextOfColumn(ReadStackColumn(model, {2, 2})), "1_SUB_ -500.000 0.000; ");
    EXPECT_EQ(TextOfColumn(ReadStackColumn(model, {2.5, 2})),
              "2Oxide 0.000 125.000; 1_SUB_ -500.000 0.000; ")
        << "half way to the next cell";
}

TEST(ReadStackColumn, OnRandomStacksItFillsFromBottomToTop) {
    for (std::uint32_t seed = 1; seed < 60; ++seed) {
        const auto model = MakeRandomStack(seed);
        TestRandom random(seed);
        for (int i = 0; i < 20; ++i) {
            const GridPosition position = PositionOnGrid(model->grid, RandomPlace(*model, random));
            const std::vector<ColumnPart> column = ReadStackColumn(*model, position);
            ASSERT_FALSE(column.empty());
            double highest = 0.0;
            for (const auto& layer : model->stack.layers) {
                if (layer != nullptr) {
                    const DrawnPoint point(model->grid, position);
                    const double top = point.HeightOf(layer->top);
                    const bool isThere = top - point.HeightOf(layer->bottom) > 1e-9;
                    highest = isThere ? top : highest;
                }
            }
            EXPECT_NEAR(column.front().to, (highest - 0.5) * 1000.0, 1e-6);
            EXPECT_NEAR(column.back().from, -500.0, 1e-6);
            for (std::size_t part = 0; part < column.size(); ++part) {
                EXPECT_GT(column[part].Thickness(), 0.0);
                if (part > 0) {
                    EXPECT_NEAR(column[part - 1].from, column[part].to, 1e-6);
                    EXPECT_TRUE(column[part].layer || column[part - 1].layer);
                }
            }
        }
    }
}

}  // namespace
}  // namespace zelmo
