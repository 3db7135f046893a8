#include "report/field_coding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/results/random_stack.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

TEST(TakeField, HoldsTheCellsThemselvesToHalfAQuantum) {
    for (std::uint32_t seed = 0; seed < CaseCount(100); ++seed) {
        const auto model = MakeRandomStack(seed);
        const PageGrid thin = ThinGrid(model->grid, 7);
        const Layer& layer = *model->stack.layers.front();
        const Field field = TakeField(layer.top, model->grid.columns, thin);
        ASSERT_EQ(field.size(), thin.CellCount());
        for (std::size_t row = 0; row < thin.rows.size(); ++row) {
            for (std::size_t col = 0; col < thin.cols.size(); ++col) {
                const double height = layer.top[CellAt(*model, thin.cols[col], thin.rows[row])];
                const double taken = field[row * thin.cols.size() + col] * pageQuantum;
                EXPECT_LE(std::abs(taken - height), pageQuantum / 2 * (1 + 1e-9));
            }
        }
    }
}

TEST(TakeField, HeightsThatNoPageHoldsAreHeld) {
    const float infinite = std::numeric_limits<float>::infinity();
    const float none = std::numeric_limits<float>::quiet_NaN();
    const std::vector<float> heights{1e30f, -1e30f, infinite, -infinite, none, 0.5f};
    const SharedArray<float> surface{std::span<const float>(heights)};
    const std::int32_t most = (1 << 30) - 1;
    EXPECT_EQ(TakeField(surface, 6, {{0, 1, 2, 3, 4, 5}, {0}}),
              (Field{most, -most, most, -most, 0, 50000}));
}

TEST(FieldCoding, PlanesGiveTheFieldAgain) {
    TestRandom random(1);
    const std::int32_t most = (1 << 30) - 1;
    for (std::uint32_t i = 0; i < CaseCount(300); ++i) {
        const std::size_t columns = 1 + random.Below(9);
        Field field(columns * (1 + random.Below(9)));
        Field base(field.size());
        for (std::size_t cell = 0; cell < field.size(); ++cell) {
            const auto any = [&] {
                const auto value = static_cast<std::int32_t>(random.Below(1U << 30));
                const std::int32_t small = value % 200;
                const std::int32_t choices[] = {value, -value, small, most, -most};
                return choices[random.Below(5)];
            };
            field[cell] = any();
            base[cell] = any();
        }
        for (const Field* const from : {static_cast<const Field*>(nullptr), &std::as_const(base)}) {
            const std::vector<std::uint8_t> planes = PlanesOf(field, from, columns);
            EXPECT_EQ(planes.size(), field.size() * 4);
            EXPECT_EQ(FieldOf(planes, from, columns), field);
        }
    }
}

TEST(FieldCoding, PlanesAreAsTheFormatSays) {
    // Two rows of two cells; the differences are 3, -300, 2, 1.
    const Field field{3, -297, 5, 6};
    EXPECT_EQ(PlanesOf(field, nullptr, 2),
              (std::vector<std::uint8_t>{6, 0x57, 4, 2, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    const Field base{3, -297, 4, 8};
    EXPECT_EQ(PlanesOf(field, &base, 2),
              (std::vector<std::uint8_t>{0, 0, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(FieldCoding, WhatDiffersLittleCostsLittle) {
    Field base(400);
    Field raised(400);
    Field changed(400);
    TestRandom random(2);
    for (std::size_t i = 0; i < base.size(); ++i) {
        base[i] = static_cast<std::int32_t>(random.Below(100000));
        raised[i] = base[i] + 5000;
        changed[i] = i / 20 < 3 ? 7 : base[i];
    }
    const std::uint64_t alone = CodingCost(raised, nullptr, 20);
    EXPECT_LT(CodingCost(raised, &base, 20), alone / 100);
    EXPECT_LT(CodingCost(changed, &base, 20), alone / 4);
    EXPECT_EQ(CodingCost(base, &base, 20), 0u);
}

}  // namespace
}  // namespace zelmo
