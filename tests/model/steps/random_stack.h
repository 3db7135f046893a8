#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/model/grid_model.h"

// Stacks to compare a step with its plain version on.

namespace zelmo {

/// A quarter's multiple, and now and then something odd.
inline float RandomHeight(TestRandom& random) {
    constexpr float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), -0.0f, 0.0f, -1e30f};
    return random.Below(60) == 0 ? odd[random.Below(5)]
                                 : static_cast<float>(random.Below(9)) * 0.25f;
}

/// A substrate on a small grid, or on a long one: with more cells than go down the stack together.
inline void SetUpRandomSubstrate(ProcessModel& model, TestRandom& random) {
    const bool isLong = random.Below(50) == 0;
    SetUpGrid(model, isLong ? 1700 : static_cast<std::int32_t>(1 + random.Below(20)),
              static_cast<std::int32_t>(2 + random.Below(isLong ? 2 : 6)), 0.5f);
    AppendFlatLayer(model, -5.0f, 5.0f, "_SUB_");
}

/// Layers that can stand apart and lie the wrong way round.
inline void SetUpRandomStack(ProcessModel& model, TestRandom& random) {
    const char* const materials[] = {"ox", "metal"};
    SetUpRandomSubstrate(model, random);
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

/// Films that lie on each other, with holes, gaps and now and then something odd between them.
inline void SetUpRandomFilms(ProcessModel& model, TestRandom& random) {
    const char* const materials[] = {"ox", "metal", "_SUB_", "PR"};
    SetUpRandomSubstrate(model, random);
    std::vector<float> surface(model.grid.CellCount(), 0.0f);
    const std::uint32_t films = 1 + random.Below(7);
    const std::uint32_t gaps = 2 + random.Below(20);
    for (std::uint32_t film = 0; film < films; ++film) {
        Layer& layer =
            AppendFlatLayer(model, 0.0f, 0.0f, materials[random.Below(random.Below(4) + 1)]);
        layer.isPhotoresist = random.Below(8) == 0;
        layer.coversAround = random.Below(4) != 0;
        const float thickness = static_cast<float>(1 + random.Below(4)) * 0.25f;
        const std::uint32_t holes = 2 + random.Below(30);
        for (std::size_t cell = 0; cell < surface.size(); ++cell) {
            surface[cell] += random.Below(gaps) == 0 ? 0.125f : 0.0f;
            layer.bottom[cell] = surface[cell];
            layer.top[cell] = random.Below(holes) == 0 ? surface[cell] : surface[cell] + thickness;
            surface[cell] = layer.top[cell];
            if (random.Below(400) == 0) {
                layer.top[cell] = RandomHeight(random);
                layer.bottom[cell] = RandomHeight(random);
            }
        }
        if (random.Below(8) == 0) {
            model.stack.layers.back().reset();
        }
    }
}

/// All that a step can change of a stack, bit for bit.
inline std::vector<std::vector<std::uint32_t>> BitsOf(const Stack& stack) {
    std::vector<std::vector<std::uint32_t>> bits{BitsOf(stack.coverMap)};
    for (const auto& layer : stack.layers) {
        if (layer == nullptr) {
            bits.emplace_back();
            continue;
        }
        bits.push_back(BitsOf(layer->top));
        bits.push_back(BitsOf(layer->bottom));
        bits.push_back({layer->changed ? 1U : 0U, layer->coversAround ? 1U : 0U});
    }
    return bits;
}

}  // namespace zelmo
