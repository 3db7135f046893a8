#include <cstdio>

#include "base/text.h"
#include "examples/gds_writer.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

std::wstring CellName(int number) {
    const std::wstring digits = std::to_wstring(number);
    return L"CELL" + std::wstring(5 - digits.size(), L'0') + digits;
}

bool WaitForForeground(HWND window) {
    WaitFor("the foreground", [&] {
        SetForegroundWindow(window);
        return GetForegroundWindow() == window;
    });
    return true;
}

void Press(WORD key) {
    INPUT input[2] = {};
    for (INPUT& half : input) {
        half.type = INPUT_KEYBOARD;
        half.ki.wVk = key;
    }
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, input, sizeof input[0]);
}

void Mouse(DWORD flags, int amount = 0) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = static_cast<DWORD>(amount);
    SendInput(1, &input, sizeof input);
}

}  // namespace

class WindowConsoleTest : public WindowTest {
protected:
    /// A layout of many cells, listed by its load.
    std::filesystem::path ManyCells(int count) {
        GdsWriter writer;
        writer.BeginLibrary();
        for (int i = 0; i < count; ++i) {
            const std::wstring name = CellName(i);
            writer.BeginCell(std::string(name.begin(), name.end()));
            writer.Rectangle(1, 0, 0, 100, 100);
            writer.EndCell();
        }
        writer.EndLibrary();
        writer.Save(File("many.gds"));
        return File("many.gds");
    }

    int FirstVisibleLine() {
        return static_cast<int>(
            SendMessageW(Program().Child(consoleId), EM_GETFIRSTVISIBLELINE, 0, 0));
    }
    int LineCount() {
        return static_cast<int>(SendMessageW(Program().Child(consoleId), EM_GETLINECOUNT, 0, 0));
    }
    bool ShowsItsEnd() {
        // The last line is the empty one behind the last line end.
        const int visible = LineCount() - FirstVisibleLine();
        return visible < 40;
    }
};

TEST_F(WindowConsoleTest, FiftyThousandCellsAreAllListedInOrder) {
    constexpr int cells = 50000;
    Start();
    Program().Load(ManyCells(cells));
    const auto lines = Program().ConsoleLines();
    ASSERT_EQ(lines.size(), 6u + cells);
    for (int i = 0; i < cells; ++i) {
        ASSERT_EQ(lines[static_cast<std::size_t>(i) + 4],
                  L"--> \"" + CellName(i) + L"\" with size dx = 100 by dy = 100");
    }
    EXPECT_TRUE(lines.back().starts_with(L"GDS database finished loading in "));
    std::printf("%s\n", Utf8FromWide(lines.back()).c_str());
    EXPECT_TRUE(ShowsItsEnd());
    // Clearing such a text takes no time either.
    Program().Load(Layout());
    EXPECT_EQ(Program().ConsoleLines().size(), 7u);
}

TEST_F(WindowConsoleTest, ANewLineScrollsBackToTheEnd) {
    Start();
    Program().Load(ManyCells(200));
    EXPECT_TRUE(ShowsItsEnd());
    const HWND console = Program().Child(consoleId);
    EXPECT_EQ(Program().Ask(ProbeRequest::ScrollConsoleUp, console).number, 0);
    // Sent past the grey menu: the one command that adds to a long text.
    Program().Command(stopCommand);
    Program().WaitForLine(L"Handling \"Stop\" request: wait for current process step to complete");
    EXPECT_TRUE(ShowsItsEnd());
}

TEST_F(WindowConsoleTest, TheWheelOverTheWindowScrollsTheConsole) {
    Start();
    Program().Load(ManyCells(200));
    const int end = FirstVisibleLine();
    ASSERT_GT(end, 100);
    SendMessageW(Program().Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_EQ(FirstVisibleLine(), end - 3);
    SendMessageW(Program().Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(FirstVisibleLine(), end);
}

TEST_F(WindowConsoleTest, TheWheelWithControlOrShiftIsHarmless) {
    Start();
    Program().Load(ManyCells(200));
    for (const WORD keys : {MK_CONTROL, MK_SHIFT}) {
        const LRESULT answer =
            SendMessageW(Program().Window(), WM_MOUSEWHEEL, MAKEWPARAM(keys, WHEEL_DELTA), 0);
        EXPECT_EQ(answer, 0);
        SendMessageW(Program().Child(consoleId), WM_MOUSEWHEEL, MAKEWPARAM(keys, WHEEL_DELTA), 0);
    }
    EXPECT_FALSE(Program().HasEnded());
    EXPECT_EQ(Program().MenuStates(), ".R.LA");
}

TEST_F(WindowConsoleTest, AClickIntoTheConsoleLeavesTheKeyboardWithTheWindow) {
    StartWithLayout();
    Program().RunToEnd(Process());
    const HWND window = Program().Window();
    ASSERT_TRUE(WaitForForeground(window));
    WaitFor("the focus", [&] { return Program().Focus() == window; });
    RECT console = {};
    GetWindowRect(Program().Child(consoleId), &console);
    SetCursorPos((console.left + console.right) / 2, (console.top + console.bottom) / 2);
    Mouse(MOUSEEVENTF_LEFTDOWN);
    Mouse(MOUSEEVENTF_LEFTUP);
    // Real keys and the real wheel reach the program after the click, in their order.
    Press(VK_RIGHT);
    Program().WaitForCaption(L"001 Substrate");
    EXPECT_EQ(Program().Focus(), window);
    Press(VK_LEFT);
    Program().WaitForCaption(L"003 Nitride deposition");
    SetCursorPos((console.left + console.right) / 2, console.top - 50);
    const int end = FirstVisibleLine();
    ASSERT_GT(end, 0);
    Mouse(MOUSEEVENTF_WHEEL, WHEEL_DELTA);
    WaitFor("the wheel", [&] { return FirstVisibleLine() < end; });
}

}  // namespace zelmo
