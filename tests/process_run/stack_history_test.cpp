#include "process_run/stack_history.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

constexpr std::uint64_t noLimit = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t cells = 6 * 4;
constexpr std::uint64_t coverBytes = cells * sizeof(CoverCell);
constexpr std::uint64_t layerBytes = cells * 2 * sizeof(float);

class StackHistoryTest : public testing::Test {
protected:
    StackHistoryTest() { SetUpGrid(model_, 6, 4, 0.5f); }

    /// Keeps stacks, each with one film more than the last and a cover map of its own.
    void KeepFilms(StackHistory& history, std::size_t count) {
        for (std::size_t index = 0; index < count; ++index) {
            AppendFlatLayer(model_, static_cast<float>(index), 1.0f);
            model_.stack.coverMap.Unshare();
            history.Keep(index, model_.stack);
        }
    }

    ProcessModel model_;
};

TEST_F(StackHistoryTest, HasTheStacksAsTheyWere) {
    StackHistory history(noLimit);
    KeepFilms(history, 3);
    ASSERT_NE(history.Find(1), nullptr);
    EXPECT_EQ(history.Find(1)->layers.size(), 2u);
    EXPECT_EQ(history.Find(1)->layers[1]->bottom, std::vector<float>(cells, 1.0f));
    EXPECT_EQ(history.Find(3), nullptr);
    EXPECT_EQ(history.LastUpTo(7), 2u);
}

TEST_F(StackHistoryTest, CountsWhatStacksShareOnce) {
    StackHistory history(noLimit);
    KeepFilms(history, 3);
    EXPECT_EQ(history.Bytes(), 3 * coverBytes + 3 * layerBytes);
}

TEST_F(StackHistoryTest, ForgetsWhatIsBehindAStep) {
    StackHistory history(noLimit);
    KeepFilms(history, 4);
    history.ForgetFrom(2);
    EXPECT_EQ(history.LastUpTo(9), 1u);
    history.ForgetFrom(0);
    EXPECT_EQ(history.LastUpTo(9), std::nullopt);
    EXPECT_EQ(history.Bytes(), 0u);
}

TEST_F(StackHistoryTest, KeepsToItsMemoryAndToTheFirstAndTheLast) {
    constexpr std::size_t steps = 12;
    const std::uint64_t limit = 5 * coverBytes + steps * layerBytes;
    StackHistory history(limit);
    KeepFilms(history, steps);
    EXPECT_LE(history.Bytes(), limit);
    EXPECT_NE(history.Find(0), nullptr);
    EXPECT_NE(history.Find(steps - 1), nullptr);
    EXPECT_NE(history.Find(steps - 2), nullptr) << "edits are near the end as a rule";
}

TEST_F(StackHistoryTest, KeepsTheFirstAndTheLastWhateverTheyTake) {
    StackHistory history(0);
    KeepFilms(history, 5);
    EXPECT_NE(history.Find(0), nullptr);
    EXPECT_NE(history.Find(4), nullptr);
    EXPECT_EQ(history.LastUpTo(3), 0u);
}

}  // namespace
}  // namespace zelmo
