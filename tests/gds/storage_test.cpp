// The arrays, pools and runs in which a database keeps its elements.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gds/growing_array.h"
#include "gds/name_cache.h"
#include "gds/point_run.h"
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
    EXPECT_EQ(items[4].value, 4);
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

TEST(GrowingArray, TakesTheItemsOfAnotherList) {
    GrowingArray<Item> items = CountTo(3);
    GrowingArray<Item> others = CountTo(100000);
    items.Take(others);
    EXPECT_TRUE(others.empty());
    items.Take(others);
    ASSERT_EQ(items.size(), 100003u);
    EXPECT_EQ(items[2].value, 2);
    EXPECT_EQ(items[3].value, 0);
    EXPECT_EQ(items.back().value, 99999);
    others.push_back({1, 7});
    EXPECT_EQ(others.back().value, 7);
}

TEST(GrowingArray, StartsAnewWhenItIsCleared) {
    GrowingArray<Item> items = CountTo(100);
    items.clear();
    EXPECT_TRUE(items.empty());
    items.push_back({1, 50});
    EXPECT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].value, 50);
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
    EXPECT_TRUE(pool.Keep(std::span<const char>()).empty());
}

TEST(RunPool, KeepsAllOfShortAndLongLists) {
    RunPool<Item> pool;
    GrowingArray<Item> items;
    std::vector<std::span<const Item>> runs;
    for (const std::int64_t length : {0, 1, 100, 200000, 3, 100000, 7}) {
        GrowingArray<Item> counted = CountTo(length);
        items.Take(counted);
        runs.push_back(pool.KeepAll(items));
        ASSERT_EQ(runs.back().size(), static_cast<std::size_t>(length));
        EXPECT_TRUE(items.empty());
    }
    const RunPool<Item> moved = std::move(pool);
    for (const std::span<const Item> run : runs) {
        for (std::size_t i = 0; i < run.size(); ++i) {
            ASSERT_EQ(run[i].value, static_cast<std::int64_t>(i));
        }
    }
}

std::vector<GdsPoint> PointsOf(const PointRun& run) {
    return {run.begin(), run.end()};
}

TEST(PointRun, GivesThePointsOfEitherWidth) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
    std::vector<NarrowPoint> narrow{{least, greatest}, {0, -1}, {greatest, least}};
    std::vector<GdsPoint> wide{{least, greatest}, {0, -1}, {greatest, least}};
    const PointRun narrowRun = std::span(narrow);
    const PointRun wideRun = std::span(wide);
    EXPECT_EQ(PointsOf(narrowRun), wide);
    EXPECT_EQ(PointsOf(wideRun), wide);
    EXPECT_EQ(narrowRun.size(), 3u);
    EXPECT_EQ(narrowRun[2], wide[2]);
    EXPECT_EQ(wideRun[2], wide[2]);
    wide[1] = {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()};
    EXPECT_EQ(wideRun[1], wide[1]);
    EXPECT_EQ(PointsOf(wideRun), wide);
}

TEST(PointRun, IsEmptyAtFirst) {
    const PointRun run;
    EXPECT_TRUE(run.empty());
    EXPECT_EQ(run.size(), 0u);
    EXPECT_TRUE(PointsOf(run).empty());
    EXPECT_EQ(run.As([](const auto points) { return points.size(); }), 0u);
}

TEST(NameCache, KeepsANameThatComesAgainOnce) {
    RunPool<char> pool;
    NameCache names;
    std::string text = "A NAME";
    const std::string_view first = names.Keep(text, pool);
    text = "another";
    const std::string_view second = names.Keep(text, pool);
    text = "A NAME";
    const std::string_view third = names.Keep(text, pool);
    EXPECT_EQ(first, "A NAME");
    EXPECT_EQ(second, "another");
    EXPECT_EQ(third.data(), first.data());
    EXPECT_TRUE(names.Keep("", pool).empty());
}

TEST(NameCache, KeepsMoreNamesThanItHasPlaces) {
    RunPool<char> pool;
    NameCache names;
    std::vector<std::string_view> kept;
    for (int i = 0; i < 20000; ++i) {
        kept.push_back(names.Keep(std::to_string(i % 10000), pool));
    }
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(kept[static_cast<std::size_t>(i)], std::to_string(i % 10000));
    }
}

}  // namespace
}  // namespace zelmo
