// What a step leaves behind when memory runs out: every allocation of every step is made to fail
// once.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/execute_step.h"
#include "tests/model/grid_model.h"
#include "tests/support/limited_memory.h"

/// The polygon library leaves a few bytes behind when memory runs out inside it; a leak of our own
/// is still an error where leaks are looked for.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:ClipperLib::";
}

namespace zelmo {
namespace {

/// Runs `work` with memory for `allocations` allocations only. False if it ran out.
bool RunWithin(std::int64_t allocations, const std::function<void()>& work) {
    LimitAllocations(allocations);
    try {
        work();
    } catch (const std::bad_alloc&) {
        LimitAllocations(-1);
        return false;
    }
    LimitAllocations(-1);
    return true;
}

ProcessStep StepOf(StepKind kind) {
    ProcessStep step;
    step.kind = kind;
    step.material = "a material whose name is too long to be kept in place";
    step.label = "a label that is too long to be kept in place as well";
    step.thickness = 0.4f;
    step.stepCoverage = 0.5f;
    step.dop = 0.5f;
    step.depth = 0.3f;
    step.iso = 0.2f;
    step.res = 0.5f;
    step.taper = 80.0f;
    step.mask = {{1, std::nullopt}};
    step.maskDark = true;
    step.targets = {"OX"};
    step.polishesToStop = true;
    step.level = -0.05f;
    return step;
}

/// A substrate, an uneven oxide, a piece of resist and a mask.
void SetUpStack(ProcessModel& model) {
    SetUpGrid(model, 9, 7, 0.25f);
    ExecuteStep(model, StepOf(StepKind::Substrate), nullptr);
    Layer& oxide = AppendFlatLayer(model, model.stack.substrateThickness, 0.2f, "OX");
    std::fill_n(oxide.top.begin(), 30, model.stack.substrateThickness + 0.25f);
    Layer& resist = AppendFlatLayer(model, model.stack.substrateThickness + 0.2f, 0.0f, "PR");
    resist.isPhotoresist = true;
    resist.top[CellAt(model, 4, 3)] += 1.0f;
    MaskPolygon triangle;
    triangle.layer = 1;
    triangle.maxX = 1.0;
    triangle.maxY = 1.0;
    triangle.points = {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}};
    model.polygons.push_back(triangle);
    UpdateCoverMap(model.stack, model.grid);
    // The stack is full, so that the next layer needs a larger one.
    model.stack.layers.shrink_to_fit();
}

std::vector<std::vector<std::uint32_t>> ArraysOf(const ProcessModel& model) {
    std::vector<std::vector<std::uint32_t>> arrays{BitsOf(model.stack.coverMap)};
    for (const auto& layer : model.stack.layers) {
        arrays.push_back(layer == nullptr ? std::vector<std::uint32_t>{} : BitsOf(layer->top));
    }
    return arrays;
}

/// How many layers a step of this kind leaves of the three.
std::size_t SlotsAfter(StepKind kind) {
    const bool adds = kind == StepKind::Coating || kind == StepKind::Deposition ||
                      kind == StepKind::Photo || kind == StepKind::Implant;
    return adds ? 4 : 3;
}

class ExhaustedMemory : public testing::TestWithParam<StepKind> {};

TEST_P(ExhaustedMemory, LeavesTheStackAsItWas) {
    const ProcessStep step = StepOf(GetParam());
    bool finished = false;
    int failures = 0;
    for (std::int64_t allocations = 0; !finished; ++allocations) {
        ASSERT_LT(allocations, 10000) << "the step never ends";
        const std::int64_t livingBefore = LivingAllocations();
        {
            ProcessModel model;
            SetUpStack(model);
            const auto before = ArraysOf(model);
            const std::int64_t livingWithStack = LivingAllocations();
            finished = RunWithin(allocations, [&] { ExecuteStep(model, step, nullptr); });
            if (!finished) {
                ++failures;
                ASSERT_EQ(LivingAllocations(), livingWithStack)
                    << "after " << allocations << " allocations";
                ASSERT_EQ(ArraysOf(model), before) << "after " << allocations << " allocations";
            } else {
                EXPECT_EQ(model.stack.layers.size(), SlotsAfter(GetParam()));
                EXPECT_NE(ArraysOf(model), before);
            }
        }
        ASSERT_EQ(LivingAllocations(), livingBefore);
    }
    const int fewest = GetParam() == StepKind::Strip ? 0 : GetParam() == StepKind::Release ? 1 : 4;
    EXPECT_GE(failures, fewest);
    EXPECT_EQ(failures > 0, fewest > 0);
}

INSTANTIATE_TEST_SUITE_P(Steps, ExhaustedMemory,
                         testing::Values(StepKind::Coating, StepKind::Deposition, StepKind::Photo,
                                         StepKind::Etch, StepKind::Strip, StepKind::Release,
                                         StepKind::Polish, StepKind::Implant));

/// The polygon library loses a few bytes of its own when memory runs out.
TEST(ExhaustedMemoryOfAMask, ThatGrowsOrShrinksLeavesTheStackAsItWas) {
    for (const float bias : {0.1f, -0.1f}) {
        ProcessStep photo = StepOf(StepKind::Photo);
        photo.adjustment = {bias, 0.05f, 0.0f};
        ProcessModel whole;
        SetUpStack(whole);
        ExecuteStep(whole, photo, nullptr);
        bool finished = false;
        int failures = 0;
        for (std::int64_t allocations = 0; !finished; ++allocations) {
            ASSERT_LT(allocations, 10000) << "the step never ends";
            ProcessModel model;
            SetUpStack(model);
            const auto before = ArraysOf(model);
            finished = RunWithin(allocations, [&] { ExecuteStep(model, photo, nullptr); });
            failures += finished ? 0 : 1;
            ASSERT_EQ(ArraysOf(model), finished ? ArraysOf(whole) : before)
                << "after " << allocations << " allocations";
        }
        EXPECT_GT(failures, 50);
    }
}

TEST(ExhaustedMemoryMarks, AreMadeBeforeAnyLayerIsReleased) {
    for (std::int64_t allocations = 0; allocations < 2; ++allocations) {
        ProcessModel model;
        SetUpStack(model);
        AppendFlatLayer(model, 5.0f, 0.5f, "OX");
        const auto before = ArraysOf(model);
        const ProcessStep release = StepOf(StepKind::Release);
        ASSERT_FALSE(RunWithin(allocations, [&] { ExecuteStep(model, release, nullptr); }));
        EXPECT_EQ(ArraysOf(model), before);
    }
}

TEST(ExhaustedMemoryTables, TablesAreReleased) {
    bool finished = false;
    int failures = 0;
    for (std::int64_t allocations = 0; !finished; ++allocations) {
        ASSERT_LT(allocations, 1000);
        const std::int64_t livingBefore = LivingAllocations();
        {
            ProcessModel model;
            finished = RunWithin(allocations, [&] { SetUpGrid(model, 20, 20, 0.1f); });
            failures += finished ? 0 : 1;
        }
        ASSERT_EQ(LivingAllocations(), livingBefore);
    }
    EXPECT_GT(failures, 2) << "the table, its index and the cover map";
}

TEST(ExhaustedMemoryThreads, TheCallerDoesTheRowsThatNoThreadTakes) {
    SetRowThreads(4);
    std::array<std::atomic<int>, 12> visits{};
    const bool finished = RunWithin(0, [&] {
        ForRowBands(12, 1, [&visits](std::int32_t firstRow, std::int32_t endRow) {
            for (std::int32_t row = firstRow; row < endRow; ++row) {
                ++visits[static_cast<std::size_t>(row)];
            }
        });
    });
    SetRowThreads(0);
    EXPECT_TRUE(finished);
    for (const std::atomic<int>& count : visits) {
        EXPECT_EQ(count, 1);
    }
}

TEST(ExhaustedMemoryThreads, AStripOnSeveralThreadsNeedsNone) {
    SetRowThreads(3);
    ProcessModel model;
    SetUpGrid(model, 4, 130, 0.25f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendFlatLayer(model, 1.0f, 0.5f).isPhotoresist = true;
    UpdateCoverMap(model.stack, model.grid);
    const ProcessStep strip = StepOf(StepKind::Strip);
    EXPECT_TRUE(RunWithin(0, [&] { ExecuteStep(model, strip, nullptr); }));
    SetRowThreads(0);
    for (const CoverCell& cover : model.stack.coverMap) {
        ASSERT_EQ(cover.layerId, 0);
        ASSERT_EQ(cover.height, 1.0f);
    }
}

TEST(ExhaustedMemoryTables, SubstrateIsReleased) {
    bool finished = false;
    for (std::int64_t allocations = 0; !finished; ++allocations) {
        ASSERT_LT(allocations, 1000);
        const std::int64_t livingBefore = LivingAllocations();
        {
            ProcessModel model;
            SetUpGrid(model, 5, 5, 0.1f);
            const std::int64_t livingWithGrid = LivingAllocations();
            finished = RunWithin(allocations,
                                 [&] { ExecuteStep(model, StepOf(StepKind::Substrate), nullptr); });
            ASSERT_EQ(model.stack.layers.size(), finished ? 1U : 0U);
            ASSERT_TRUE(finished || LivingAllocations() == livingWithGrid);
        }
        ASSERT_EQ(LivingAllocations(), livingBefore);
    }
}

}  // namespace
}  // namespace zelmo
