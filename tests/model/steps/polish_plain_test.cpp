// The polish against one that looks at each square and each cell by itself, on random stacks.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/plain/polish_plain.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

class PolishAgainstPlain : public testing::Test {
protected:
    void TearDown() override {
        AllowWideLanes(true);
        SetRowThreads(0);
    }
};

/// Mostly between the films; sometimes below or above all.
ProcessStep RandomPolish(TestRandom& random) {
    ProcessStep step;
    step.kind = StepKind::Polish;
    step.polishesToStop = random.Below(4) != 0;
    const float levels[] = {0.0f,
                            0.25f,
                            -0.25f,
                            0.375f,
                            -1.0f,
                            1.5f,
                            -1e30f,
                            1e30f,
                            std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity()};
    step.level = levels[random.Below(random.Below(4) == 0 ? 10 : 6)];
    step.targets = {"ox"};
    switch (random.Below(4)) {
        case 0:
            step.targets.emplace_back("metal");
            break;
        case 1:
            step.targets = {"PR", "metal", "_SUB_"};
            break;
        default:
            break;
    }
    return step;
}

void PrepareStack(ProcessModel& model, TestRandom& random, std::uint32_t seed) {
    if (seed % 3 == 0) {
        SetUpRandomStack(model, random);
    } else {
        SetUpRandomFilms(model, random);
    }
    if (seed % 50 == 1) {
        // Long enough for several bands of rows and tiles of squares.
        model = ProcessModel{};
        SetUpGrid(model, seed % 100 == 1 ? 1100 : 9, seed % 100 == 1 ? 70 : 300, 0.5f);
        AppendFlatLayer(model, -5.0f, 5.0f, "_SUB_");
        for (const char* const material : {"ox", "metal", "ox"}) {
            Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f, material);
            for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
                layer.top[cell] = random.Below(4) == 0 ? RandomHeight(random) : 0.0f;
            }
        }
    }
    for (const auto& layer : model.stack.layers) {
        if (layer != nullptr) {
            layer->changed = false;
        }
    }
    model.stack.substrateThickness = static_cast<float>(random.Below(3)) * 0.25f;
}

/// Takes the layers away that were changed and have no thickness any more. Some leave the stack
/// before the step ends, and the others then.
void DropEmptied(Stack& stack) {
    for (auto& layer : stack.layers) {
        if (layer != nullptr && layer->changed && layer->top == layer->bottom) {
            layer.reset();
        }
    }
}

TEST_F(PolishAgainstPlain, LevelsTheSameSurfacesToTheSameBits) {
    const std::uint32_t cases = CaseCount(500);
    std::uint32_t polished = 0;
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        AllowWideLanes(seed % 2 == 0);
        SetRowThreads(static_cast<std::int32_t>(1 + seed / 2 % 3));
        ProcessModel model;
        ProcessModel plain;
        TestRandom random(seed);
        PrepareStack(model, random, seed);
        TestRandom again(seed);
        PrepareStack(plain, again, seed);
        const auto before = BitsOf(plain.stack);
        const ProcessStep step = RandomPolish(random);
        const bool expected = ExecutePolishPlain(plain.stack, plain.grid, step);
        ASSERT_EQ(ExecutePolish(model.stack, model.grid, step), expected) << "seed " << seed;
        DropEmptied(model.stack);
        DropEmptied(plain.stack);
        ASSERT_EQ(BitsOf(model.stack), BitsOf(plain.stack)) << "seed " << seed;
        polished += BitsOf(plain.stack) != before ? 1 : 0;
    }
    EXPECT_GT(polished, cases / 4) << "too few stacks were changed at all";
}

}  // namespace
}  // namespace zelmo
