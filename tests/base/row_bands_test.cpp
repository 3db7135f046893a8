#include "base/row_bands.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/stop_scope.h"

namespace zelmo {
namespace {

class RowBandsTest : public testing::Test {
protected:
    ~RowBandsTest() override { SetRowThreads(0); }
};

TEST_F(RowBandsTest, EveryRowIsTakenOnce) {
    for (const std::int32_t threads : {1, 2, 3, 7, 64}) {
        SetRowThreads(threads);
        for (const std::int32_t rows : {1, 2, 5, 64, 1001}) {
            std::vector<std::atomic<int>> visits(static_cast<std::size_t>(rows));
            ForRowBands(rows, 1, [&](std::int32_t firstRow, std::int32_t endRow) {
                for (std::int32_t row = firstRow; row < endRow; ++row) {
                    ++visits[static_cast<std::size_t>(row)];
                }
            });
            for (const std::atomic<int>& count : visits) {
                EXPECT_EQ(count, 1) << rows << " rows on " << threads << " threads";
            }
        }
    }
}

TEST_F(RowBandsTest, NoRowsNoWork) {
    ForRowBands(0, 1, [](std::int32_t, std::int32_t) { FAIL(); });
    ForRowBands(-3, 1, [](std::int32_t, std::int32_t) { FAIL(); });
}

TEST_F(RowBandsTest, BandsHaveTheSmallestSizeAtLeast) {
    SetRowThreads(8);
    std::atomic<int> bands{0};
    ForRowBands(20, 8, [&](std::int32_t firstRow, std::int32_t endRow) {
        ++bands;
        EXPECT_GE(endRow - firstRow, 8);
    });
    EXPECT_EQ(bands, 2);
    ForRowBands(3, 8, [&](std::int32_t firstRow, std::int32_t endRow) {
        EXPECT_EQ(firstRow, 0);
        EXPECT_EQ(endRow, 3);
    });
}

TEST_F(RowBandsTest, BandsRunOnThreadsOfTheirOwnAndOneOnTheCallers) {
    SetRowThreads(4);
    std::mutex mutex;
    std::set<std::thread::id> threads;
    ForRowBands(4, 1, [&](std::int32_t, std::int32_t) {
        const std::scoped_lock lock(mutex);
        threads.insert(std::this_thread::get_id());
    });
    EXPECT_TRUE(threads.contains(std::this_thread::get_id()));
    EXPECT_GE(threads.size(), 2U);
}

TEST_F(RowBandsTest, TheLowestBandsExceptionIsThrownOnWhenAllAreDone) {
    SetRowThreads(4);
    std::atomic<int> done{0};
    try {
        ForRowBands(4, 1, [&](std::int32_t firstRow, std::int32_t) {
            ++done;
            if (firstRow >= 2) {
                throw std::runtime_error("band " + std::to_string(firstRow));
            }
        });
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "band 2");
    }
    EXPECT_EQ(done, 4);
}

TEST_F(RowBandsTest, AsManyThreadsAsCoresUnlessSet) {
    EXPECT_GE(RowThreads(), 1);
    SetRowThreads(5);
    EXPECT_EQ(RowThreads(), 5);
    SetRowThreads(0);
    EXPECT_EQ(RowThreads(),
              static_cast<std::int32_t>(std::min(64U, std::thread::hardware_concurrency())));
}

TEST_F(RowBandsTest, WorkOfAStoppedThreadDoesNotBegin) {
    std::atomic<bool> stop = false;
    const StopScope scope(&stop);
    int bands = 0;
    ForRowBands(5, 5, [&](std::int32_t, std::int32_t) { ++bands; });
    EXPECT_EQ(bands, 1);
    stop = true;
    EXPECT_THROW(ForRowBands(5, 5, [&](std::int32_t, std::int32_t) { ++bands; }), Stopped);
    EXPECT_EQ(bands, 1);
}

TEST_F(RowBandsTest, AllBandsSeeThatTheWorkIsStopped) {
    SetRowThreads(4);
    std::atomic<bool> stop = false;
    std::atomic<int> ended = 0;
    const StopScope scope(&stop);
    EXPECT_THROW(ForRowBands(4, 1,
                             [&](std::int32_t, std::int32_t) {
                                 stop = true;
                                 try {
                                     EndIfStopped();
                                 } catch (const Stopped&) {
                                     ++ended;
                                     throw;
                                 }
                             }),
                 Stopped);
    EXPECT_EQ(ended, 4);
}

TEST_F(RowBandsTest, WhatIsStoppedIsTheInnermostScopeAlone) {
    std::atomic<bool> stop = true;
    const StopScope outer(&stop);
    {
        const StopScope inner(nullptr);
        EXPECT_NO_THROW(EndIfStopped());
    }
    EXPECT_THROW(EndIfStopped(), Stopped);
}

}  // namespace
}  // namespace zelmo
