#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "model/cover_map.h"
#include "model/execute_step.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

ProcessStep ImplantInto(std::vector<std::string> targets, float depth,
                        std::string material = "well") {
    ProcessStep step;
    step.kind = StepKind::Implant;
    step.material = std::move(material);
    step.label = step.material;
    step.targets = std::move(targets);
    step.depth = depth;
    step.color = {0.25f, 0.5f, 0.75f};
    step.alpha = 0.5f;
    return step;
}

ProcessStep StepOf(StepKind kind) {
    ProcessStep step;
    step.kind = kind;
    return step;
}

/// Films on a substrate of 10 micrometres, on a grid of 12 by 7 whose rows are alike: a film has
/// thickness in a range of columns.
class Implant : public testing::Test {
protected:
    static constexpr std::int32_t cols = 12;

    void SetUp() override {
        SetUpGrid(model, cols, 7, 1.0f);
        model.stack.substrateThickness = 10.0f;
        Append("_SUB_", 10.0f);
    }

    /// Lays a film on what is exposed, and takes it away outside a range of columns.
    Layer& Append(const std::string& material, float thickness, std::int32_t firstCol = 0,
                  std::int32_t endCol = cols) {
        Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f, material);
        layer.changed = false;
        layer.isPhotoresist = material == "PR";
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            const auto col = static_cast<std::int32_t>(cell) % cols;
            layer.bottom[cell] = model.stack.coverMap[cell].height;
            layer.top[cell] =
                layer.bottom[cell] + (col >= firstCol && col < endCol ? thickness : 0.0f);
        }
        UpdateCoverMap(model.stack, model.grid);
        return layer;
    }

    /// Runs the implant and returns its layer.
    Layer& Run(const ProcessStep& step) {
        ExecuteImplant(model.stack, model.grid, step);
        return *model.stack.layers.back();
    }

    /// A surface along a row.
    static std::vector<float> Along(std::span<const float> heights) {
        return {heights.begin() + 3 * cols, heights.begin() + 4 * cols};
    }
    std::vector<float> CoverAlong() const {
        std::vector<float> heights;
        for (std::int32_t col = 0; col < cols; ++col) {
            heights.push_back(model.stack.coverMap[CellAt(model, col, 3)].height);
        }
        return heights;
    }
    static std::vector<float> Everywhere(float height) { return std::vector<float>(cols, height); }
    /// One height in a range of columns and another one elsewhere.
    static std::vector<float> Within(std::int32_t firstCol, std::int32_t endCol, float inside,
                                     float outside) {
        std::vector<float> heights = Everywhere(outside);
        std::fill(heights.begin() + firstCol, heights.begin() + endCol, inside);
        return heights;
    }

    ProcessModel model;
};

TEST_F(Implant, TakesTheUpperPartOfTheTarget) {
    Layer& silicon = Append("si", 4.0f);
    const std::vector<float> cover = CoverAlong();
    Layer& well = Run(ImplantInto({"si"}, 1.5f));
    EXPECT_EQ(Along(well.top), Everywhere(14.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(12.5f));
    EXPECT_EQ(Along(silicon.top), Everywhere(12.5f));
    EXPECT_EQ(Along(silicon.bottom), Everywhere(10.0f));
    EXPECT_TRUE(silicon.changed);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 2);
    EXPECT_EQ(CoverAlong(), cover);
}

TEST_F(Implant, ItsLayerLooksAndIsNamedAsTheStepSays) {
    Append("si", 4.0f);
    const Layer& well = Run(ImplantInto({"si"}, 1.5f));
    EXPECT_EQ(well.material, "well");
    EXPECT_EQ(well.label, "well");
    EXPECT_EQ(well.color, (std::array<float, 3>{0.25f, 0.5f, 0.75f}));
    EXPECT_EQ(well.alpha, 0.5f);
    EXPECT_FALSE(well.isPhotoresist);
    EXPECT_TRUE(well.changed);
}

TEST_F(Implant, GoesOnThroughTargetsThatTouch) {
    Layer& silicon = Append("si", 4.0f);
    Layer& epi = Append("epi", 1.0f);
    Layer& cap = Append("si", 0.5f);
    const Layer& well = Run(ImplantInto({"si", "epi"}, 2.5f));
    EXPECT_EQ(Along(well.top), Everywhere(15.5f));
    EXPECT_EQ(Along(well.bottom), Everywhere(13.0f));
    EXPECT_EQ(Along(cap.top), Everywhere(15.0f)) << "down to its own bottom";
    EXPECT_EQ(Along(epi.top), Everywhere(14.0f)) << "the same";
    EXPECT_EQ(Along(silicon.top), Everywhere(13.0f));
}

TEST_F(Implant, EndsAtTheBottomOfTheLastTarget) {
    Append("ox", 1.0f);
    Layer& silicon = Append("si", 1.0f);
    const Layer& well = Run(ImplantInto({"si"}, 5.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(11.0f));
    EXPECT_EQ(Along(well.top), Everywhere(12.0f));
    EXPECT_EQ(Along(silicon.top), Along(silicon.bottom));
}

TEST_F(Implant, DoesNotGoThroughAnotherMaterialIntoATarget) {
    Layer& silicon = Append("si", 4.0f);
    Append("ox", 0.25f);
    Append("si", 0.5f);
    const Layer& well = Run(ImplantInto({"si"}, 3.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(14.25f));
    EXPECT_EQ(Along(silicon.top), Everywhere(14.0f));
    EXPECT_FALSE(silicon.changed);
}

TEST_F(Implant, AGapEndsIt) {
    Layer& silicon = Append("si", 4.0f);
    Layer& bridge = AppendFlatLayer(model, 14.5f, 1.0f, "si");
    UpdateCoverMap(model.stack, model.grid);
    const Layer& well = Run(ImplantInto({"si"}, 3.0f));
    EXPECT_EQ(Along(well.top), Everywhere(15.5f));
    EXPECT_EQ(Along(well.bottom), Everywhere(14.5f));
    EXPECT_EQ(Along(bridge.top), Everywhere(14.5f));
    EXPECT_EQ(Along(silicon.top), Everywhere(14.0f));
}

TEST_F(Implant, ReachingExactlyTheBottomOfALayerLeavesTheNextOne) {
    Layer& silicon = Append("si", 4.0f);
    Append("epi", 1.0f);
    const Layer& well = Run(ImplantInto({"si", "epi"}, 1.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(14.0f));
    EXPECT_EQ(Along(silicon.top), Everywhere(14.0f));
    EXPECT_FALSE(silicon.changed);
}

TEST_F(Implant, TheSubstrateEndsItAndIsNoTarget) {
    Append("si", 1.0f, 0, 6);
    const auto substrate = BitsOf(model.stack.layers[0]->top);
    const Layer& well = Run(ImplantInto({"si", "_SUB_"}, 5.0f));
    EXPECT_EQ(Along(well.top), Within(0, 6, 11.0f, 10.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(10.0f));
    EXPECT_EQ(BitsOf(model.stack.layers[0]->top), substrate);
}

TEST_F(Implant, IsShieldedByThinOxide) {
    Layer& silicon = Append("si", 4.0f);
    Append("ox", 0.001f, 5, cols);
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(silicon.top), Within(0, 5, 13.0f, 14.0f));
    EXPECT_EQ(Along(well.top), Everywhere(14.0f));
    EXPECT_EQ(Along(well.bottom), Within(0, 5, 13.0f, 14.0f));
}

TEST_F(Implant, IsNotShieldedByALayerThatOnlyCoversFromBeside) {
    // In column 5 the cover is the oxide's edge; the silicon is exposed all the same.
    Layer& silicon = Append("si", 4.0f);
    Append("ox", 1.0f, 6, cols);
    ASSERT_EQ(model.stack.coverMap[CellAt(model, 5, 3)].layerId, 2);
    Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(silicon.top), Within(0, 6, 13.0f, 14.0f));
}

TEST_F(Implant, ResistShieldsAlsoWhereATypeHasItsName) {
    Append("si", 4.0f);
    Append("PR", 1.0f, 6, cols);
    const Layer& well = Run(ImplantInto({"si", "PR"}, 1.0f));
    EXPECT_EQ(Along(well.bottom), Within(0, 6, 13.0f, 14.0f));
}

TEST_F(Implant, LeavesNoFinAfterTheResistIsStripped) {
    Append("si", 4.0f);
    Append("PR", 2.0f, 6, cols);
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(well.top), Everywhere(14.0f));
    EXPECT_EQ(CoverAlong(), Within(6, cols, 16.0f, 14.0f)) << "nor a moat at the resist's edge";
    ExecuteStrip(model.stack, model.grid, StepOf(StepKind::Strip));
    EXPECT_EQ(CoverAlong(), Everywhere(14.0f));
    const Layer& film = Append("nit", 0.5f);
    EXPECT_EQ(Along(film.bottom), Everywhere(14.0f));
}

TEST_F(Implant, LeavesNeitherFinNorMoatBesideAGate) {
    Append("si", 4.0f);
    Append("ox", 0.125f, 4, 8);
    Append("poly", 2.0f, 4, 8);
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(well.top), Everywhere(14.0f)) << "under the gate, too";
    EXPECT_EQ(Along(well.bottom), Within(4, 8, 14.0f, 13.0f));
    EXPECT_EQ(CoverAlong(), Within(4, 8, 16.125f, 14.0f));
    const Layer& film = Append("nit", 0.5f);
    EXPECT_EQ(Along(film.bottom), Within(4, 8, 16.125f, 14.0f));
    EXPECT_EQ(Along(film.top), Within(4, 8, 16.625f, 14.5f));
}

TEST_F(Implant, UnderResistOnAGateItsEdgeLiesOnTheTargetAsWell) {
    Append("si", 4.0f);
    Append("ox", 0.125f, 4, 8);
    Append("poly", 2.0f, 4, 8);
    Append("PR", 3.0f, 6, cols);
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(well.top), Everywhere(14.0f));
    EXPECT_EQ(Along(well.bottom), Within(0, 4, 13.0f, 14.0f));
    ExecuteStrip(model.stack, model.grid, StepOf(StepKind::Strip));
    EXPECT_EQ(CoverAlong(), Within(4, 8, 16.125f, 14.0f));
}

TEST_F(Implant, BesideAFilledTrenchItsEdgeIsThatOfTheTarget) {
    // The target ends at the trench, and what fills it stands higher.
    Layer& silicon = Append("si", 4.0f, 0, 6);
    Layer& fill = AppendFlatLayer(model, 14.0f, 0.0f, "ox");
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        if (cell % cols >= 6) {
            fill.bottom[cell] = 10.0f;
            fill.top[cell] = 15.0f;
        }
    }
    UpdateCoverMap(model.stack, model.grid);
    const std::vector<float> cover = CoverAlong();
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    std::vector<float> top = Within(0, 6, 14.0f, 15.0f);
    top[6] = silicon.top[6];
    EXPECT_EQ(top[6], 10.0f);
    EXPECT_EQ(Along(well.top), top) << "the cover's height farther away";
    EXPECT_EQ(CoverAlong(), cover);
}

TEST_F(Implant, WhereThereIsNoTargetItLiesOnWhatIsExposed) {
    Append("ox", 1.0f, 3, cols);
    const auto before = BitsOf(model.stack);
    const Layer& well = Run(ImplantInto({"si"}, 1.0f));
    EXPECT_EQ(Along(well.top), CoverAlong());
    EXPECT_EQ(Along(well.bottom), CoverAlong());
    model.stack.layers.pop_back();
    EXPECT_EQ(BitsOf(model.stack), before);
}

TEST_F(Implant, AnExposedHeightThatIsNoNumberGivesItNoThickness) {
    Append("ox", 1.0f);
    for (const float strange : {nan, infinity, -infinity}) {
        model.stack.coverMap[8].height = strange;
        model.stack.layers[1]->top[8] = strange;
        const Layer& well = Run(ImplantInto({"si"}, 1.0f));
        EXPECT_EQ(well.top[8], 10.0f);
        EXPECT_EQ(well.bottom[8], 10.0f);
    }
}

TEST_F(Implant, ATargetThatIsNoNumberShields) {
    Layer& silicon = Append("si", 4.0f);
    Layer& epi = Append("epi", 1.0f);
    epi.top[1] = nan;
    epi.bottom[2] = nan;
    epi.top[3] = infinity;
    epi.top[4] = 13.0f;  // the wrong way round
    const Layer& well = Run(ImplantInto({"si", "epi"}, 2.0f));
    for (std::size_t cell = 1; cell < 5; ++cell) {
        EXPECT_EQ(silicon.top[cell], 14.0f) << cell;
        EXPECT_EQ(well.top[cell], 14.0f) << cell;
        EXPECT_EQ(well.bottom[cell], 14.0f) << cell;
    }
    EXPECT_EQ(well.bottom[5], 13.0f);
}

TEST_F(Implant, ItsTypeCanBeATargetAfterwards) {
    Layer& silicon = Append("si", 4.0f);
    Layer& well = Run(ImplantInto({"si"}, 2.0f));
    Append("PR", 1.0f, 6, cols);
    Layer& diffusion = Run(ImplantInto({"well"}, 0.5f, "n+"));
    EXPECT_EQ(Along(diffusion.top), Everywhere(14.0f));
    EXPECT_EQ(Along(diffusion.bottom), Within(0, 6, 13.5f, 14.0f));
    EXPECT_EQ(Along(well.top), Within(0, 6, 13.5f, 14.0f));
    EXPECT_EQ(Along(well.bottom), Everywhere(12.0f));
    EXPECT_EQ(Along(silicon.top), Everywhere(12.0f));
    // And one that reaches through all three.
    ExecuteStrip(model.stack, model.grid, StepOf(StepKind::Strip));
    Layer& deep = Run(ImplantInto({"well", "n+", "si"}, 3.0f, "deep"));
    EXPECT_EQ(Along(deep.top), Everywhere(14.0f));
    EXPECT_EQ(Along(deep.bottom), Everywhere(11.0f));
    EXPECT_EQ(Along(diffusion.top), Along(diffusion.bottom));
    EXPECT_EQ(Along(well.top), Along(well.bottom));
    EXPECT_EQ(Along(silicon.top), Everywhere(11.0f));
}

TEST_F(Implant, CanBeEtchedAndReleased) {
    Append("si", 4.0f);
    Layer& well = Run(ImplantInto({"si"}, 2.0f));
    ProcessStep etch = StepOf(StepKind::Etch);
    etch.targets = {"well"};
    etch.depth = 0.5f;
    ExecuteEtch(model.stack, model.grid, etch);
    EXPECT_EQ(Along(well.top), Everywhere(13.5f));
    ProcessStep release = StepOf(StepKind::Release);
    release.targets = {"well"};
    ExecuteRelease(model.stack, model.grid, release);
    EXPECT_EQ(Along(well.top), Everywhere(12.0f));
    EXPECT_EQ(CoverAlong(), Everywhere(12.0f));
}

TEST_F(Implant, MarksTheLayersThatItConverts) {
    Layer& deep = Append("si", 4.0f);
    Layer& epi = Append("epi", 1.0f);
    Layer& oxide = Append("ox", 1.0f, 8, cols);
    const auto version = epi.version;
    Run(ImplantInto({"si", "epi", "absent"}, 0.5f));
    EXPECT_FALSE(deep.changed);
    EXPECT_TRUE(epi.changed);
    EXPECT_NE(epi.version, version);
    EXPECT_FALSE(oxide.changed);
}

TEST_F(Implant, WithoutAnythingConvertedLeavesNoLayer) {
    Append("si", 4.0f);
    Append("ox", 1.0f);
    for (const ProcessStep& step :
         {ImplantInto({"si"}, 1.0f), ImplantInto({}, 1.0f), ImplantInto({"ox"}, 0.0f)}) {
        const std::vector<float> cover = CoverAlong();
        ExecuteStep(model, step, nullptr);
        EXPECT_EQ(model.stack.layers.back(), nullptr);
        EXPECT_EQ(model.stack.layerCount, 3);
        EXPECT_EQ(CoverAlong(), cover);
    }
}

TEST_F(Implant, ConvertedLayersWithNothingLeftLeaveTheStack) {
    Append("ox", 1.0f);
    Append("si", 0.5f);
    ExecuteStep(model, ImplantInto({"si"}, 1.0f), nullptr);
    EXPECT_EQ(model.stack.layers[2], nullptr);
    EXPECT_EQ(model.stack.layerCount, 3);
    EXPECT_EQ(model.stack.layers[3]->bottom[0], 11.0f);
}

TEST_F(Implant, IsLevelledByAPolishWithItsEdge) {
    Append("si", 4.0f);
    Append("PR", 1.0f, 6, cols);
    Layer& well = Run(ImplantInto({"si"}, 2.0f));
    ProcessStep polish = StepOf(StepKind::Polish);
    polish.level = 3.0f;
    ASSERT_TRUE(ExecutePolish(model.stack, model.grid, polish));
    EXPECT_EQ(Along(well.top), Everywhere(13.0f));
    EXPECT_EQ(Along(well.bottom), Within(0, 6, 12.0f, 13.0f));
    EXPECT_EQ(CoverAlong(), Everywhere(13.0f));
}

}  // namespace
}  // namespace zelmo
