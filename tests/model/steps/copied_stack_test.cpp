#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "model/execute_step.h"
#include "model/process_model.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/support/case_count.h"

// A copy of a stack shares its surfaces: whatever a step does to one, the other stays.

namespace zelmo {
namespace {

ProcessStep RandomStep(TestRandom& random) {
    constexpr StepKind kinds[] = {StepKind::Coating, StepKind::Deposition, StepKind::Photo,
                                  StepKind::Etch,    StepKind::Strip,      StepKind::Release,
                                  StepKind::Polish,  StepKind::Implant};
    ProcessStep step;
    step.kind = kinds[random.Below(8)];
    step.thickness = static_cast<float>(random.Below(5)) * 0.25f;
    step.depth = static_cast<float>(random.Below(8)) * 0.25f;
    step.iso = static_cast<float>(random.Below(3)) * 0.5f;
    step.stepCoverage = 0.5f;
    step.dop = static_cast<float>(random.Below(3)) * 0.5f;
    step.level = static_cast<float>(random.Below(6)) * 0.25f;
    step.maskDark = random.Below(2) == 0;
    step.material = random.Below(2) == 0 ? "ox" : "metal";
    step.targets = {"ox"};
    if (random.Below(2) == 0) {
        step.targets.push_back("metal");
    }
    return step;
}

TEST(CopiedStack, StaysWhateverStepsDoToTheOther) {
    TestRandom random(81);
    const std::uint32_t cases = CaseCount(600);
    for (std::uint32_t run = 0; run < cases; ++run) {
        ProcessModel model;
        SetUpRandomFilms(model, random);
        for (int steps = 0; steps < 4; ++steps) {
            const ProcessStep step = RandomStep(random);
            const Stack copy = CopyStack(model.stack);
            const auto before = BitsOf(copy);
            ASSERT_EQ(BitsOf(model.stack), before);
            ExecuteStep(model, step, nullptr);
            ASSERT_EQ(BitsOf(copy), before) << run << " kind " << static_cast<int>(step.kind);
        }
    }
}

TEST(CopiedStack, StepsGiveOnACopyWhatTheyGiveOnTheOther) {
    TestRandom random(82);
    const std::uint32_t cases = CaseCount(300);
    for (std::uint32_t run = 0; run < cases; ++run) {
        ProcessModel model;
        SetUpRandomFilms(model, random);
        ProcessModel other;
        other.settings = model.settings;
        other.grid = model.grid;
        other.stack = CopyStack(model.stack);
        for (int steps = 0; steps < 4; ++steps) {
            const ProcessStep step = RandomStep(random);
            ExecuteStep(model, step, nullptr);
            ExecuteStep(other, step, nullptr);
            ASSERT_EQ(BitsOf(other.stack), BitsOf(model.stack)) << run;
        }
    }
}

TEST(CopiedStack, SharesWhatNeitherHasRewritten) {
    ProcessModel model;
    SetUpGrid(model, 6, 4, 0.5f);
    AppendFlatLayer(model, -5.0f, 5.0f, "_SUB_");
    AppendFlatLayer(model, 0.0f, 1.0f, "ox");
    const Stack copy = CopyStack(model.stack);
    ProcessStep release;
    release.kind = StepKind::Release;
    release.targets = {"ox"};
    ExecuteStep(model, release, nullptr);
    EXPECT_TRUE(copy.layers[0]->top.SharesWith(model.stack.layers[0]->top));
    EXPECT_EQ(copy.layers[0]->version, model.stack.layers[0]->version);
    EXPECT_EQ(copy.layers[1]->top, std::vector<float>(24, 1.0f));
}

}  // namespace
}  // namespace zelmo
