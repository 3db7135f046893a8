#include "batch/time_table.h"

#include <gtest/gtest.h>

#include "model/process_model.h"

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

std::vector<ProcessStep> Steps(const std::vector<std::string>& descriptions) {
    std::vector<ProcessStep> steps(descriptions.size());
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i].description = descriptions[i];
    }
    return steps;
}

TEST(TimeTable, ListsTheLongestFirst) {
    const auto steps = Steps({"Substrate", "Oxide deposition", "Hole etching"});
    const std::vector<StepSeconds> seconds = {{0.001, 0.5}, {1.25, 0.25}, {0.0, 0.501}};
    EXPECT_EQ(TimeTable(steps, seconds, 80),
              (Lines{"  step, s   picture", "     1.25      0.25  2: Oxide deposition",
                     "     0.00      0.50  1: Substrate", "     0.00      0.50  3: Hole etching",
                     "     1.25      1.25  all"}));
}

TEST(TimeTable, TakesManyTogether) {
    const auto steps = Steps(std::vector<std::string>(9, "a"));
    std::vector<StepSeconds> seconds;
    for (int i = 1; i <= 9; ++i) {
        seconds.push_back({static_cast<double>(i), 0.5});
    }
    EXPECT_EQ(
        TimeTable(steps, seconds, 80),
        (Lines{"  step, s   picture", "     9.00      0.50  9: a", "     8.00      0.50  8: a",
               "     7.00      0.50  7: a", "     6.00      0.50  6: a",
               "     5.00      0.50  5: a", "     4.00      0.50  4: a",
               "     6.00      1.50  the other 3 steps", "    45.00      4.50  all"}));
    seconds.resize(7);
    EXPECT_EQ(TimeTable(steps, seconds, 80).size(), 9U);
    EXPECT_EQ(TimeTable(steps, {}, 80), Lines{});
    EXPECT_EQ(TimeTable({}, seconds, 80), Lines{});
}

TEST(TimeTable, FitsTheTerminalAndShowsNoControlCharacters) {
    const auto steps = Steps({"a\x1B[2Jb", "\xE9\xE9\xE9"});
    const std::vector<StepSeconds> seconds = {{2, 0}, {1, 0}};
    const Lines lines = TimeTable(steps, seconds, 28);
    EXPECT_EQ(lines[1], "     2.00      0.00  1: a [");
    EXPECT_EQ(lines[2].substr(0, 24), "     1.00      0.00  2: ");
    EXPECT_EQ(TimeTable(steps, seconds, 2), (Lines{" ", " ", " ", " "}));
}

}  // namespace
}  // namespace zelmo
