#include "batch/progress.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(ProgressLine, TellsStepCountDescriptionAndTime) {
    EXPECT_EQ(ProgressLine(3, 30, "oxide deposition", 12999, 80),
              "step 3 of 30: oxide deposition, 12 s");
}

TEST(ProgressLine, IsCutInItsDescriptionToFitTheTerminal) {
    EXPECT_EQ(ProgressLine(3, 30, "oxide deposition", 12000, 26), "step 3 of 30: oxide, 12 s");
    EXPECT_EQ(ProgressLine(3, 30, "oxide deposition", 12000, 20), "step 3 of 30: , 12 ");
    EXPECT_EQ(ProgressLine(3, 30, "oxide deposition", 12000, 5), "step");
    EXPECT_EQ(ProgressLine(3, 30, "oxide deposition", 12000, 1), "");
}

TEST(ProgressLine, CutsBetweenCharactersNotBytes) {
    EXPECT_EQ(ProgressLine(3, 30, "\xC3\xA9\xC3\xA9\xC3\xA9", 12000, 22),
              "step 3 of 30: \xC3\xA9, 12 s");
}

TEST(ProgressLine, ShowsNoControlCharacters) {
    EXPECT_EQ(ProgressLine(1, 1, "a\x1B[2Jb\nc", 0, 80), "step 1 of 1: a [2Jb c, 0 s");
}

TEST(Progress, ShowsNothingWhereThereIsNoTerminal) {
    testing::internal::CaptureStderr();
    {
        Progress progress(0);
        progress.BeginStep(1, 2, "Substrate");
        progress.Interrupt([] {});
        progress.End();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Progress, ShowsTheStepAroundInterruptionsAndWipesItAtTheEnd) {
    testing::internal::CaptureStderr();
    {
        Progress progress(40);
        progress.BeginStep(1, 2, "Substrate");
        progress.Interrupt([] { std::fputs("a line\n", stderr); });
    }
    const std::string line = "\rstep 1 of 2: Substrate, 0 s";
    const std::string wiped = "\r" + std::string(39, ' ') + "\r";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + wiped + "a line\n" + line + wiped);
}

}  // namespace
}  // namespace zelmo
