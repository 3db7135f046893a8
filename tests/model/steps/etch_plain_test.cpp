// The etch's way down the stack against one that goes cell by cell, on random stacks.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/offset/surface_offset.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/model/steps/random_stack.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

/// From the top of the stack down to the first material that stands.
void EtchColumnPlain(ProcessModel& model, const std::string& target, std::size_t cell,
                     float targetFront, float resistFront, bool sameFront) {
    for (std::size_t id = model.stack.layers.size() - 1; id > 0; --id) {
        Layer* layer = model.stack.layers[id].get();
        if (layer == nullptr || layer->top[cell] == layer->bottom[cell]) {
            continue;
        }
        if (layer->material != target && !layer->isPhotoresist) {
            return;
        }
        const float front = layer->isPhotoresist ? resistFront : targetFront;
        if (!(layer->top[cell] > front)) {
            if (layer->isPhotoresist && !sameFront) {
                return;  // what resist covers stays
            }
            continue;
        }
        layer->top[cell] = front;
        if (!(layer->bottom[cell] > front)) {
            return;
        }
        layer->top[cell] = layer->bottom[cell];
    }
}

std::vector<std::vector<std::uint32_t>> TopsOf(const ProcessModel& model) {
    std::vector<std::vector<std::uint32_t>> tops;
    for (const auto& layer : model.stack.layers) {
        tops.push_back(layer == nullptr ? std::vector<std::uint32_t>{} : BitsOf(layer->top));
    }
    return tops;
}

class EtchAgainstPlain : public testing::Test {
protected:
    void TearDown() override {
        AllowWideLanes(true);
        SetRowThreads(0);
    }
};

TEST_F(EtchAgainstPlain, LowersTheSameCellsToTheSameBits) {
    const std::uint32_t cases = CaseCount(400);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        AllowWideLanes(seed % 2 == 0);
        SetRowThreads(static_cast<std::int32_t>(1 + seed % 3));
        ProcessModel model;
        ProcessModel plain;
        TestRandom random(seed);
        SetUpRandomStack(model, random);
        TestRandom again(seed);
        SetUpRandomStack(plain, again);

        ProcessStep step;
        step.kind = StepKind::Etch;
        step.targets = {"ox"};
        step.depth = static_cast<float>(random.Below(5)) * 0.25f;
        constexpr float rates[] = {1.0f, 1.0f, 0.0f, 0.5f, 0.3f};
        step.resistRate = rates[random.Below(5)];
        ExecuteEtch(model.stack, model.grid, step);

        std::vector<float> surface;
        for (const CoverCell& cell : plain.stack.coverMap) {
            surface.push_back(cell.height);
        }
        std::vector<float> front(surface.size());
        OffsetSurface(plain.grid, front, surface, -step.depth, step.iso);
        std::vector<float> resistFront(surface.size());
        OffsetSurface(plain.grid, resistFront, surface, -(step.depth * step.resistRate), step.iso);
        for (std::size_t cell = 0; cell < front.size(); ++cell) {
            EtchColumnPlain(plain, "ox", cell, front[cell], resistFront[cell],
                            step.resistRate == 1.0f);
        }
        ASSERT_EQ(TopsOf(model), TopsOf(plain)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace zelmo
