// The etch's way down the stack against one that goes cell by cell, on random stacks.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/offset/surface_offset.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// From the top of the stack down to the first material that stands.
void EtchColumnPlain(ProcessModel& model, const std::string& target, std::size_t cell,
                     float front) {
    for (std::size_t id = model.stack.layers.size() - 1; id > 0; --id) {
        Layer* layer = model.stack.layers[id].get();
        if (layer == nullptr || layer->top[cell] == layer->bottom[cell]) {
            continue;
        }
        if (layer->material != target && !layer->isPhotoresist) {
            return;
        }
        if (!(layer->top[cell] > front)) {
            continue;
        }
        layer->top[cell] = front;
        if (!(layer->bottom[cell] > front)) {
            return;
        }
        layer->top[cell] = layer->bottom[cell];
    }
}

float RandomHeight(TestRandom& random) {
    constexpr float odd[] = {nan, std::numeric_limits<float>::infinity(), -0.0f, 0.0f, -1e30f};
    return random.Below(60) == 0 ? odd[random.Below(5)]
                                 : static_cast<float>(random.Below(9)) * 0.25f;
}

/// Layers that can stand apart and lie the wrong way round.
void SetUpRandomStack(ProcessModel& model, TestRandom& random) {
    const char* const materials[] = {"ox", "metal"};
    const bool isLong = random.Below(50) == 0;  // more cells than go down the stack together
    SetUpGrid(model, isLong ? 1700 : static_cast<std::int32_t>(1 + random.Below(20)),
              static_cast<std::int32_t>(2 + random.Below(isLong ? 2 : 6)), 0.5f);
    AppendFlatLayer(model, -5.0f, 5.0f, "_SUB_");
    const std::uint32_t films = random.Below(6);
    for (std::uint32_t film = 0; film < films; ++film) {
        Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f, materials[random.Below(2)]);
        layer.isPhotoresist = random.Below(5) == 0;
        const std::uint32_t rarity = 1 + random.Below(4);
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            layer.bottom[cell] = RandomHeight(random);
            layer.top[cell] = random.Below(rarity) == 0 ? RandomHeight(random) : layer.bottom[cell];
        }
        if (random.Below(8) == 0) {
            model.stack.layers.back().reset();
        }
    }
    for (CoverCell& cell : model.stack.coverMap) {
        cell.height = RandomHeight(random);
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
        ExecuteEtch(model.stack, model.grid, step);

        std::vector<float> surface;
        for (const CoverCell& cell : plain.stack.coverMap) {
            surface.push_back(cell.height);
        }
        std::vector<float> front(surface.size());
        OffsetSurface(plain.grid, front, surface, -step.depth, step.iso);
        for (std::size_t cell = 0; cell < front.size(); ++cell) {
            EtchColumnPlain(plain, "ox", cell, front[cell]);
        }
        ASSERT_EQ(TopsOf(model), TopsOf(plain)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace zelmo
