// The implant against one that goes down each column by itself, on random stacks.

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/plain/implant_plain.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

class ImplantAgainstPlain : public testing::Test {
protected:
    void TearDown() override {
        AllowWideLanes(true);
        SetRowThreads(0);
    }
};

ProcessStep RandomImplant(TestRandom& random) {
    ProcessStep step;
    step.kind = StepKind::Implant;
    step.material = "doped";
    const float depths[] = {0.25f,  0.5f,  1.0f,
                            0.375f, 2.0f,  0.0f,
                            1e-9f,  1e30f, std::numeric_limits<float>::infinity()};
    step.depth = depths[random.Below(9)];
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
        UpdateCoverMap(model.stack, model.grid);
    }
    for (const auto& layer : model.stack.layers) {
        if (layer != nullptr) {
            layer->changed = false;
        }
    }
    model.stack.substrateThickness = static_cast<float>(random.Below(3)) * 0.25f;
}

TEST_F(ImplantAgainstPlain, ConvertsTheSameColumnsToTheSameBits) {
    const std::uint32_t cases = CaseCount(600);
    std::uint32_t converted = 0;
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        AllowWideLanes(seed % 2 == 0);
        SetRowThreads(static_cast<std::int32_t>(1 + seed / 2 % 3));
        ProcessModel model;
        ProcessModel plain;
        TestRandom random(seed);
        PrepareStack(model, random, seed);
        TestRandom again(seed);
        PrepareStack(plain, again, seed);
        // The second one finds what the first one made.
        for (const char* const next : {"ox", "doped"}) {
            ProcessStep step = RandomImplant(random);
            step.targets.emplace_back(next);
            const auto before = BitsOf(plain.stack);
            ExecuteImplant(model.stack, model.grid, step);
            ExecuteImplantPlain(plain.stack, plain.grid, step);
            ASSERT_EQ(BitsOf(model.stack), BitsOf(plain.stack)) << "seed " << seed;
            converted +=
                plain.stack.layers.back()->top != plain.stack.layers.back()->bottom ? 1 : 0;
        }
    }
    EXPECT_GT(converted, cases / 2) << "too few stacks were changed at all";
}

}  // namespace
}  // namespace zelmo
