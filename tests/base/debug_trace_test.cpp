#include "base/debug_trace.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zelmo {
namespace {

std::vector<std::string> traced;

class DebugTraceTest : public testing::Test {
protected:
    void SetUp() override {
        traced.clear();
        SetDebugTraceSink([](const char* text) { traced.emplace_back(text); });
    }
    void TearDown() override { SetDebugTraceSink(nullptr); }
};

TEST_F(DebugTraceTest, FormatsLikePrintf) {
    DebugTrace("RunNext (Thread %d) %s %%", 17, "x");
    EXPECT_EQ(traced, (std::vector<std::string>{"RunNext (Thread 17) x %"}));
}

TEST_F(DebugTraceTest, CutsTheTextAt1023Characters) {
    const std::string text(1023, 'a');
    DebugTrace("%s", text.c_str());
    DebugTrace("%s", (text + "bcd").c_str());
    EXPECT_EQ(traced, (std::vector<std::string>{text, text}));
}

TEST_F(DebugTraceTest, WithoutASinkNothingIsSeen) {
    SetDebugTraceSink(nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    DebugTrace("Handling run");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(traced.empty());
}

}  // namespace
}  // namespace zelmo
