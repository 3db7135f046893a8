#include "base/log_console.h"

#include <gtest/gtest.h>

#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

/// Keeps lines as they arrive, without turning them into UTF-8.
class WideConsole : public LogConsole {
public:
    std::vector<std::wstring> lines;

protected:
    void AppendLine(std::wstring line) override { lines.push_back(std::move(line)); }
};

TEST(LogConsole, EmptyTextAddsAnEmptyLineInBothForms) {
    RecordingConsole console;
    console.Write(std::string());
    console.Write(std::wstring());
    EXPECT_EQ(console.lines, (std::vector<std::string>{"", ""}));
}

TEST(LogConsole, KeepsTheOrderOfWideAndNarrowLines) {
    RecordingConsole console;
    console.Write(std::wstring(L"one"));
    console.Write(std::string("two"));
    console.Write(std::wstring(L"three"));
    EXPECT_EQ(console.lines, (std::vector<std::string>{"one", "two", "three"}));
}

TEST(LogConsole, WidensNarrowBytesBySignExtension) {
    WideConsole console;
    console.Write(std::string("a\x7F\x80\xE4\xFF"));
    ASSERT_EQ(console.lines.size(), 1u);
    EXPECT_EQ(console.lines[0], (std::wstring{L'a', wchar_t{0x7F}, wchar_t{0xFF80}, wchar_t{0xFFE4},
                                              wchar_t{0xFFFF}}));
}

TEST(LogConsole, PercentSignsPassUnchanged) {
    RecordingConsole console;
    console.Write(std::string("100% of %s and %d %n"));
    console.Write(std::wstring(L"%%"));
    EXPECT_EQ(console.lines, (std::vector<std::string>{"100% of %s and %d %n", "%%"}));
}

}  // namespace
}  // namespace zelmo
