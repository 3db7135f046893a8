#include "report/field_store.h"

#include <gtest/gtest.h>

#include <cmath>

#include "report/zlib_stream.h"
#include "tests/results/random_stack.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

/// All fields of chunks, read as the format says.
std::vector<Field> DecodeAll(const std::vector<PageChunk>& chunks, const PageGrid& grid) {
    std::vector<Field> fields;
    const std::size_t size = grid.CellCount() * 4;
    for (const PageChunk& chunk : chunks) {
        const std::vector<std::uint8_t> planes = Inflate(chunk.stream, chunk.bases.size() * size);
        for (std::size_t i = 0; i < chunk.bases.size(); ++i) {
            const Field* const base =
                chunk.bases[i] < 0 ? nullptr : &fields.at(static_cast<std::size_t>(chunk.bases[i]));
            fields.push_back(
                FieldOf(std::span(planes).subspan(i * size, size), base, grid.cols.size()));
        }
    }
    return fields;
}

/// Takes a random step: some layer is rewritten, comes, goes or stays as it is.
void ChangeAtRandom(ProcessModel& model, TestRandom& random) {
    Stack& stack = model.stack;
    const std::size_t slot = random.Below(static_cast<std::uint32_t>(stack.layers.size()));
    Layer* const layer = stack.layers[slot].get();
    switch (random.Below(5)) {
        case 0:
            break;  // nothing changes
        case 1:
            if (layer != nullptr) {
                MarkChanged(*layer);
                for (float& height : layer->top) {
                    height += random.Below(3) == 0 ? 0.01f * random.Unit() : 0.0f;
                }
            }
            break;
        case 2:
            if (layer != nullptr) {
                MarkChanged(*layer);  // to the same heights
            }
            break;
        case 3:
            if (slot > 0) {
                stack.layers[slot].reset();
            }
            break;
        default:
            if (layer != nullptr) {
                auto film = CreateLayer(model.grid);
                film->bottom = layer->top;
                film->top = layer->top;
                film->top.Unshare();
                for (float& height : film->top) {
                    height += 0.3f;
                }
                AppendLayer(stack, std::move(film));
            }
    }
}

void ExpectHeights(const SharedArray<float>& surface, const Field& field, const PageGrid& thin,
                   std::int32_t columns) {
    ASSERT_EQ(field.size(), thin.CellCount());
    for (std::size_t i = 0; i < field.size(); ++i) {
        const std::int32_t row = thin.rows[i / thin.cols.size()];
        const std::int32_t col = thin.cols[i % thin.cols.size()];
        const double height = surface[static_cast<std::size_t>(row * columns + col)];
        ASSERT_LE(std::abs(field[i] * pageQuantum - height), pageQuantum / 2 * (1 + 1e-9));
    }
}

void ExpectStack(const Stack& stack, const PageStack& taken, const std::vector<Field>& fields,
                 const PageGrid& thin, std::int32_t columns) {
    std::size_t next = 0;
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        if (stack.layers[slot] == nullptr) {
            continue;
        }
        const PageLayer& layer = taken.layers.at(next++);
        EXPECT_EQ(layer.facts, FactsOf(stack, slot));
        ExpectHeights(stack.layers[slot]->top, fields.at(static_cast<std::size_t>(layer.top)), thin,
                      columns);
        ExpectHeights(stack.layers[slot]->bottom, fields.at(static_cast<std::size_t>(layer.bottom)),
                      thin, columns);
    }
    EXPECT_EQ(next, taken.layers.size());
}

TEST(FieldStore, EveryStackOfARunComesOutAsItWas) {
    for (std::uint32_t seed = 0; seed < CaseCount(60); ++seed) {
        const auto model = MakeRandomStack(seed);
        TestRandom random(seed);
        const PageGrid thin = ThinGrid(model->grid, 12);
        FieldStore store(thin);
        std::vector<Stack> stacks;
        std::vector<PageStack> taken;
        for (int step = 0; step < 12; ++step) {
            stacks.push_back(CopyStack(model->stack));
            taken.push_back(store.Take(model->stack, model->grid.columns));
            ChangeAtRandom(*model, random);
        }
        const std::vector<Field> fields = DecodeAll(store.Chunks(), thin);
        for (std::size_t step = 0; step < stacks.size(); ++step) {
            ExpectStack(stacks[step], taken[step], fields, thin, model->grid.columns);
        }
    }
}

TEST(FieldStore, AStepThatChangesNothingSendsNothing) {
    const auto model = MakeRandomStack(4);
    FieldStore store(ThinGrid(model->grid, 12));
    const PageStack first = store.Take(model->stack, model->grid.columns);
    EXPECT_EQ(first.chunk, 0);
    for (const auto& layer : model->stack.layers) {
        if (layer != nullptr) {
            MarkChanged(*layer);  // to the same heights
            layer->top = std::vector<float>(layer->top.begin(), layer->top.end());
        }
    }
    const PageStack second = store.Take(model->stack, model->grid.columns);
    EXPECT_EQ(second.chunk, -1);
    EXPECT_EQ(store.Chunks().size(), 1u);
    ASSERT_EQ(second.layers.size(), first.layers.size());
    for (std::size_t i = 0; i < first.layers.size(); ++i) {
        EXPECT_EQ(second.layers[i].top, first.layers[i].top);
        EXPECT_EQ(second.layers[i].bottom, first.layers[i].bottom);
    }
}

TEST(FieldStore, EqualSurfacesAreOneField) {
    ProcessModel model;
    SetUpGrid(model, 40, 40, 0.1f);
    AppendFlatLayer(model, 0.0f, 0.5f);
    AppendFlatLayer(model, 0.5f, 0.25f);
    FieldStore store(ThinGrid(model.grid, 12));
    const PageStack taken = store.Take(model.stack, model.grid.columns);
    EXPECT_EQ(store.Chunks().at(0).bases.size(), 3u);
    EXPECT_EQ(taken.layers[1].bottom, taken.layers[0].top);
}

TEST(FieldStore, WhatIsTakenAnewIsAsInAFreshRun) {
    for (std::uint32_t seed = 0; seed < CaseCount(40); ++seed) {
        const auto model = MakeRandomStack(seed);
        TestRandom random(seed + 1000);
        const PageGrid thin = ThinGrid(model->grid, 10);
        FieldStore fresh(thin);
        FieldStore resumed(thin);
        std::vector<Stack> stacks;
        for (int step = 0; step < 8; ++step) {
            stacks.push_back(CopyStack(model->stack));
            fresh.Take(model->stack, model->grid.columns);
            ChangeAtRandom(*model, random);
        }
        // Another end of the run, of which nothing is to remain.
        const std::size_t kept = random.Below(8);
        for (std::size_t step = 0; step < kept; ++step) {
            resumed.Take(stacks[step], model->grid.columns);
        }
        for (int step = 0; step < 3; ++step) {
            resumed.Take(model->stack, model->grid.columns);
            ChangeAtRandom(*model, random);
        }
        resumed.KeepFirst(kept);
        for (std::size_t step = kept; step < stacks.size(); ++step) {
            resumed.Take(stacks[step], model->grid.columns);
        }
        ASSERT_EQ(resumed.Chunks().size(), fresh.Chunks().size());
        for (std::size_t chunk = 0; chunk < fresh.Chunks().size(); ++chunk) {
            EXPECT_EQ(resumed.Chunks()[chunk].stream, fresh.Chunks()[chunk].stream);
            EXPECT_EQ(resumed.Chunks()[chunk].bases, fresh.Chunks()[chunk].bases);
        }
    }
}

TEST(FieldStore, GridsWithoutCellsHaveStacksAllTheSame) {
    const auto model = MakeRandomStack(9);
    FieldStore store(PageGrid{});
    EXPECT_FALSE(store.Take(model->stack, model->grid.columns).layers.empty());
    store.KeepFirst(0);
    EXPECT_TRUE(store.Chunks().empty());
}

}  // namespace
}  // namespace zelmo
