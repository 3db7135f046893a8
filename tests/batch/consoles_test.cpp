#include "batch/consoles.h"

#include <gtest/gtest.h>

#include "batch/progress.h"
#include "tests/support/recording_console.h"

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

TEST(RememberingConsole, PassesLinesOnAndKeepsThem) {
    RecordingConsole next;
    RememberingConsole console(&next);
    console.Write(std::string("one"));
    console.Write(std::wstring(L"two"));
    EXPECT_EQ(console.Lines(), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(next.lines, console.Lines());
}

TEST(RememberingConsole, TellsTheFirstErrorAndCountsTheOthers) {
    RememberingConsole console(nullptr);
    EXPECT_EQ(console.FirstError(), "");
    console.Write(std::string("Extracting polygons"));
    EXPECT_EQ(console.FirstError(), "");
    console.Write(std::string("Error in line 4: Unknown command"));
    EXPECT_EQ(console.FirstError(), "Error in line 4: Unknown command");
    console.Write(std::string("ERROR: Cell name X was not found in the GDS database"));
    console.Write(std::string("Error: Missing gds, location, or settings command"));
    console.Write(std::string("Opening process file a failed with error(s) given above"));
    EXPECT_EQ(console.FirstError(), "Error in line 4: Unknown command (and 2 more)");
}

TEST(WriteErrorLine, IsOneLineWhateverTheMessageHolds) {
    testing::internal::CaptureStderr();
    WriteErrorLine("the shader failed: 0:1(1): error\n0:2(1): error\r\n\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zelmo-batch: the shader failed: 0:1(1): error 0:2(1): error\n");
}

}  // namespace
}  // namespace zelmo
