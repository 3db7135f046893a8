#include "batch/consoles.h"

#include <gtest/gtest.h>

#include "batch/progress.h"

namespace zelmo {
namespace {

TEST(OutputConsole, WritesLinesInUtf8) {
    Progress progress(0);
    OutputConsole console(progress, false);
    testing::internal::CaptureStdout();
    console.Write(std::wstring(L"caf\u00E9 \u20AC"));
    console.Write(std::string());
    console.Write(std::string("\xE4"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "caf\xC3\xA9 \xE2\x82\xAC\n\n\xEF\xBF\xA4\n");
    EXPECT_EQ(console.Failure(), "");
}

TEST(OutputConsole, QuietWritesNothing) {
    Progress progress(0);
    OutputConsole console(progress, true);
    testing::internal::CaptureStdout();
    console.Write(std::string("line"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(WriteErrorLine, IsOneLineWhateverTheMessageHolds) {
    testing::internal::CaptureStderr();
    WriteErrorLine("the shader failed: 0:1(1): error\n0:2(1): error\r\n\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zelmo-batch: the shader failed: 0:1(1): error 0:2(1): error\n");
}

}  // namespace
}  // namespace zelmo
