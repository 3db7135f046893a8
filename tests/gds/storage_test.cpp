// The arrays and the pool in which a database keeps its elements.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "gds/growing_array.h"
#include "gds/run_pool.h"

namespace zelmo {
namespace {

struct Item {
    std::uint16_t kind = 7;
    std::int64_t value = -1;
};

GrowingArray<Item> CountTo(std::int64_t end) {
    GrowingArray<Item> items;
    for (std::int64_t i = 0; i < end; ++i) {
        items.push_back({static_cast<std::uint16_t>(i % 5), i});
    }
    return items;
}

TEST(GrowingArray, KeepsItsItemsWhileItGrows) {
    constexpr std::int64_t count = 100000;
    const GrowingArray<Item> items = CountTo(count);
    ASSERT_EQ(items.size(), static_cast<std::size_t>(count));
    std::int64_t expected = 0;
    for (const Item& item : items) {
        ASSERT_EQ(item.value, expected);
        ASSERT_EQ(item.kind, expected % 5);
        ++expected;
    }
    EXPECT_EQ(expected, count);
}

TEST(GrowingArray, IsEmptyAtFirst) {
    GrowingArray<Item> items;
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(items.begin(), items.end());
    items.shrink_to_fit();
    EXPECT_TRUE(items.empty());
    EXPECT_THROW(items.at(0), std::out_of_range);
}

TEST(GrowingArray, TakesOneOfItsOwnItems) {
    GrowingArray<Item> items = CountTo(4);
    for (int i = 0; i < 100; ++i) {
        items.push_back(items[1]);
    }
    EXPECT_EQ(items.size(), 104u);
    EXPECT_EQ(items.back().value, 1);
}

TEST(GrowingArray, GrowsOnAfterItWasCutToItsSize) {
    GrowingArray<Item> items = CountTo(5);
    items.shrink_to_fit();
    EXPECT_EQ(items.at(4).value, 4);
    items.push_back({1, 50});
    EXPECT_EQ(items.size(), 6u);
    EXPECT_EQ(items[0].value, 0);
    EXPECT_EQ(items[5].value, 50);
}

TEST(GrowingArray, LeavesNothingWhereItIsMovedFrom) {
    GrowingArray<Item> items = CountTo(9);
    GrowingArray<Item> other = std::move(items);
    EXPECT_EQ(other.size(), 9u);
    EXPECT_TRUE(items.empty());  // NOLINT: what is left is defined
    items.push_back({2, 3});
    EXPECT_EQ(items.back().value, 3);
    other = std::move(items);
    EXPECT_EQ(other.size(), 1u);
    EXPECT_EQ(other[0].value, 3);
}

TEST(RunPool, RunsStayWhereTheyAre) {
    RunPool<std::int64_t> pool;
    std::vector<std::span<std::int64_t>> runs;
    for (std::size_t length = 0; length < 700; ++length) {
        // Now and then one that is longer than any block
        const std::size_t count = length % 100 == 99 ? 600000 : length;
        runs.push_back(pool.Take(count));
        ASSERT_EQ(runs.back().size(), count);
        std::iota(runs.back().begin(), runs.back().end(), static_cast<std::int64_t>(length));
    }
    RunPool<std::int64_t> moved = std::move(pool);
    moved.Take(100000)[0] = -1;
    pool.Take(10)[0] = -1;  // NOLINT: starts anew
    for (std::size_t i = 0; i < runs.size(); ++i) {
        for (std::size_t k = 0; k < runs[i].size(); ++k) {
            ASSERT_EQ(runs[i][k], static_cast<std::int64_t>(i + k));
        }
    }
}

TEST(RunPool, KeepsCopies) {
    RunPool<char> pool;
    std::vector<char> text{'a', 'b', 'c'};
    const std::span<const char> kept = pool.Keep(text);
    text = {'x', 'y', 'z'};
    EXPECT_EQ(std::vector<char>(kept.begin(), kept.end()), (std::vector<char>{'a', 'b', 'c'}));
    EXPECT_TRUE(pool.Keep({}).empty());
}

}  // namespace
}  // namespace zelmo
