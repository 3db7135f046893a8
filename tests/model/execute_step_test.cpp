#include "model/execute_step.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "tests/model/grid_model.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

Lines traceLines;

/// Collects the trace while it lives.
struct TraceRecorder {
    TraceRecorder() {
        traceLines.clear();
        SetDebugTraceSink([](const char* text) { traceLines.emplace_back(text); });
    }
    ~TraceRecorder() { SetDebugTraceSink(nullptr); }
};

ProcessStep StepOf(StepKind kind, std::string description = "") {
    ProcessStep step;
    step.kind = kind;
    step.description = std::move(description);
    return step;
}

/// A model with its substrate on.
void SetUpSubstrate(ProcessModel& model, std::int32_t cols, std::int32_t rows) {
    SetUpGrid(model, cols, rows, 0.1f);
    ExecuteStep(model, StepOf(StepKind::Substrate), nullptr);
}

Layer& AppendResist(ProcessModel& model, float bottom, float thickness) {
    Layer& resist = AppendFlatLayer(model, bottom, thickness, "PR");
    resist.isPhotoresist = true;
    return resist;
}

TEST(ExecuteStep, SaysWhatItExecutes) {
    ProcessModel model;
    SetUpGrid(model, 3, 3, 1.0f);
    RecordingConsole console;
    ExecuteStep(model, StepOf(StepKind::Strip, "PR strip {}"), &console);
    EXPECT_EQ(console.lines, (Lines{"Executing PR strip {} ..."}));
}

TEST(ExecuteStep, WithoutADescriptionSaysNothing) {
    ProcessModel model;
    SetUpGrid(model, 3, 3, 1.0f);
    RecordingConsole console;
    ExecuteStep(model, StepOf(StepKind::Substrate), &console);
    EXPECT_TRUE(console.lines.empty());
    EXPECT_EQ(model.stack.layers.size(), 1U);
}

TEST(ExecuteStep, OtherKindsDoNothing) {
    for (const std::int32_t kind : {1, 5, 6, 13, -1, 2147483647}) {
        ProcessModel model;
        SetUpSubstrate(model, 3, 3);
        const auto before = BitsOf(model.stack.coverMap);
        ProcessStep step;
        step.kind = static_cast<StepKind>(kind);
        step.description = "something";
        RecordingConsole console;
        ExecuteStep(model, step, &console);
        EXPECT_EQ(console.lines, (Lines{"Executing something ..."}));
        EXPECT_EQ(model.stack.layers.size(), 1U);
        EXPECT_EQ(BitsOf(model.stack.coverMap), before);
    }
}

TEST(ExecuteStep, TracesEveryKindButSubstrateAndDump) {
    const TraceRecorder recorder;
    const std::pair<StepKind, Lines> kinds[] = {
        {StepKind::Coating, {"Executing coating"}},
        {StepKind::Deposition, {"Executing deposition"}},
        {StepKind::Substrate, {}},
        {StepKind::Photo, {"Executing photo"}},
        {StepKind::Etch, {"Executing etch"}},
        {StepKind::Strip, {"Executing strip"}},
        {StepKind::Release, {"Executing release"}},
        {StepKind::Polish, {"Executing polish"}},
        {StepKind::Implant, {"Executing implant"}},
    };
    for (const auto& [kind, lines] : kinds) {
        ProcessModel model;
        SetUpSubstrate(model, 4, 4);
        traceLines.clear();
        ExecuteStep(model, StepOf(kind), nullptr);
        EXPECT_EQ(traceLines, lines) << static_cast<std::int32_t>(kind);
    }
}

TEST(SubstrateStep, LiesOnTheCoverAndBecomesIt) {
    ProcessModel model;
    SetUpGrid(model, 4, 3, 0.1f);
    model.settings.windowWidth = 86.0f;
    model.stack.coverMap[5].height = 2.0f;
    model.stack.coverMap[6].layerId = 9;
    ExecuteStep(model, StepOf(StepKind::Substrate), nullptr);

    const float thickness = 0x1.133334p+2f;  // 86 times the single-precision 0.05
    EXPECT_EQ(model.stack.substrateThickness, thickness);
    ASSERT_EQ(model.stack.layers.size(), 1U);
    const Layer& substrate = *model.stack.layers[0];
    EXPECT_EQ(substrate.material, "_SUB_");
    EXPECT_EQ(substrate.label, "SUBSTRATE");
    EXPECT_EQ(substrate.alpha, 1.0f);
    EXPECT_NE(substrate.version, nullptr);
    EXPECT_FALSE(substrate.isPhotoresist);
    for (std::size_t cell = 0; cell < 12; ++cell) {
        const float bottom = cell == 5 ? 2.0f : 0.0f;
        EXPECT_EQ(substrate.bottom[cell], bottom);
        EXPECT_EQ(substrate.top[cell], bottom + thickness);
        EXPECT_EQ(model.stack.coverMap[cell].height, bottom + thickness);
        EXPECT_EQ(model.stack.coverMap[cell].layerId, 0);
    }
}

TEST(SubstrateStep, ThicknessIsASinglePrecisionTwentiethOfTheWindow) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 0.1f);
    model.settings.windowWidth = 346.0f;
    ExecuteStep(model, StepOf(StepKind::Substrate), nullptr);
    EXPECT_EQ(model.stack.substrateThickness, 0x1.14cccep+4f);
}

TEST(SubstrateStep, TakesTheStepsColourAndIsOpaque) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    ProcessStep step = StepOf(StepKind::Substrate, "Substrate");
    step.color = {0.25f, 0.5f, 0.75f};
    RecordingConsole console;
    ExecuteStep(model, step, &console);
    EXPECT_EQ(model.stack.layers[0]->color, (std::array<float, 3>{0.25f, 0.5f, 0.75f}));
    EXPECT_EQ(model.stack.layers[0]->alpha, 1.0f);
    EXPECT_EQ(console.lines, (Lines{"Executing Substrate ..."}));
}

TEST(CoatingStep, AddsALevelledLayerAndUpdatesTheCover) {
    ProcessModel model;
    SetUpSubstrate(model, 20, 12);
    Layer& bump = AppendFlatLayer(model, model.stack.substrateThickness, 0.0f, "bump");
    bump.top[CellAt(model, 7, 6)] += 0.4f;
    UpdateCoverMap(model.stack, model.grid);
    const std::vector<CoverCell> coverBefore(model.stack.coverMap.begin(),
                                             model.stack.coverMap.end());

    ProcessStep step = StepOf(StepKind::Coating, "SOG coating");
    step.material = "SOG";
    step.materialType = "glass";
    step.label = "Spin on glass";
    step.color = {0.25f, 0.5f, 0.75f};
    step.alpha = 0.5f;
    step.thickness = 0.15f;
    step.dop = 0.8f;
    RecordingConsole console;
    ExecuteStep(model, step, &console);

    EXPECT_EQ(console.lines, (Lines{"Executing SOG coating ..."}));
    ASSERT_EQ(model.stack.layers.size(), 3U);
    const Layer& film = *model.stack.layers[2];
    EXPECT_EQ(film.material, "SOG");
    EXPECT_EQ(film.label, "Spin on glass");
    EXPECT_EQ(film.color, step.color);
    EXPECT_EQ(film.alpha, 0.5f);
    EXPECT_NE(film.version, nullptr);
    EXPECT_FALSE(film.isPhotoresist);

    const auto expected = CreateLayer(model.grid);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        expected->bottom[cell] = coverBefore[cell].height;
        expected->top[cell] = 0.15f + coverBefore[cell].height;
    }
    SmoothLayerTopPlain(model.grid, *expected, 0.15f * 2.2f * 0.8f);
    EXPECT_EQ(BitsOf(film.bottom), BitsOf(expected->bottom));
    EXPECT_EQ(BitsOf(film.top), BitsOf(expected->top));
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        EXPECT_EQ(model.stack.coverMap[cell].layerId, 2);
        EXPECT_EQ(model.stack.coverMap[cell].height, film.top[cell]);
    }
}

TEST(CoatingStep, LeavesTheOtherLayersAlone) {
    ProcessModel model;
    SetUpSubstrate(model, 8, 8);
    const auto version = model.stack.layers[0]->version;
    const auto top = BitsOf(model.stack.layers[0]->top);
    ProcessStep step = StepOf(StepKind::Coating);
    step.thickness = 0.3f;
    step.dop = 1.0f;
    ExecuteStep(model, step, nullptr);
    EXPECT_EQ(BitsOf(model.stack.layers[0]->top), top);
    EXPECT_EQ(model.stack.layers[0]->version, version);
}

TEST(StripStep, DeletesAllResistAndBringsTheLayerBelowBack) {
    ProcessModel model;
    SetUpSubstrate(model, 5, 5);
    const float ground = model.stack.substrateThickness;
    AppendFlatLayer(model, ground, 0.5f, "OX");
    AppendResist(model, ground + 0.5f, 1.0f);
    AppendFlatLayer(model, ground, 0.0f, "none").changed = false;
    AppendResist(model, ground, 0.0f);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[12].layerId, 2);

    ExecuteStep(model, StepOf(StepKind::Strip), nullptr);
    ASSERT_EQ(model.stack.layers.size(), 5U);
    EXPECT_NE(model.stack.layers[0], nullptr);
    EXPECT_NE(model.stack.layers[1], nullptr);
    EXPECT_EQ(model.stack.layers[2], nullptr);
    EXPECT_NE(model.stack.layers[3], nullptr);
    EXPECT_EQ(model.stack.layers[4], nullptr);
    for (const CoverCell& cover : model.stack.coverMap) {
        EXPECT_EQ(cover.layerId, 1);
        EXPECT_EQ(cover.height, ground + 0.5f);
    }
}

TEST(StripStep, LeavesTheOtherSurfacesAlone) {
    ProcessModel model;
    SetUpSubstrate(model, 3, 3);
    AppendResist(model, model.stack.substrateThickness, 1.0f);
    const auto version = model.stack.layers[0]->version;
    ExecuteStep(model, StepOf(StepKind::Strip), nullptr);
    EXPECT_EQ(model.stack.layers[0]->version, version);
}

TEST(StripStep, WithoutLayersLeavesTheCoverAlone) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    model.stack.coverMap[1] = {4, 2.0f};
    ExecuteStep(model, StepOf(StepKind::Strip), nullptr);
    EXPECT_EQ(model.stack.coverMap[1].layerId, 4);
    EXPECT_EQ(model.stack.coverMap[1].height, 2.0f);
}

TEST(EmptiedLayer, LeavesTheStackAtTheEndOfItsStep) {
    ProcessModel model;
    SetUpSubstrate(model, 4, 4);
    AppendFlatLayer(model, model.stack.substrateThickness, 0.5f, "OX");
    AppendFlatLayer(model, model.stack.substrateThickness + 0.5f, 0.5f, "NIT");
    UpdateCoverMap(model.stack, model.grid);
    ProcessStep release = StepOf(StepKind::Release);
    release.targets = {"OX"};
    ExecuteStep(model, release, nullptr);
    ASSERT_EQ(model.stack.layers.size(), 3U);
    EXPECT_EQ(model.stack.layers[1], nullptr);
    ASSERT_NE(model.stack.layers[2], nullptr);
    EXPECT_EQ(model.stack.layers[2]->material, "NIT");
    EXPECT_EQ(model.stack.layerCount, 2);
    EXPECT_EQ(model.stack.coverMap[5].layerId, 2);
}

TEST(EmptiedLayer, OfAStepThatAddedItLeavesAtOnce) {
    ProcessModel model;
    SetUpSubstrate(model, 4, 4);
    ProcessStep photo = StepOf(StepKind::Photo);
    photo.thickness = 1.0f;
    photo.maskDark = true;  // and no polygon
    ExecuteStep(model, photo, nullptr);
    ASSERT_EQ(model.stack.layers.size(), 2U);
    EXPECT_EQ(model.stack.layers[1], nullptr);
    EXPECT_EQ(model.stack.layerCount, 1);
}

}  // namespace
}  // namespace zelmo
