#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

RECT RectOf(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    return rect;
}

RECT ClientOf(HWND window) {
    RECT rect = {};
    GetClientRect(window, &rect);
    return rect;
}

/// Where a child stands in its parent's client area.
RECT RectInParent(HWND child) {
    RECT rect = RectOf(child);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

DWORD StyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
}

DWORD ExtendedStyleOf(HWND window) {
    return static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
}

std::wstring ClassNameOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, std::size(name));
    return name;
}

std::vector<HWND> ChildrenOf(HWND window) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

}  // namespace

using WindowFactsTest = WindowTest;

TEST_F(WindowFactsTest, MainWindowHasItsSizeInTheMiddleOfTheScreen) {
    Start();
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = GetSystemMetrics(SM_CYSCREEN);
    if (const char* expected = std::getenv("ZELMO_SCREEN_WIDTH")) {
        ASSERT_EQ(std::to_string(screenWidth), expected);  // the screen that was asked for
    }
    const int width = std::min(1200, screenWidth);
    const int height = std::min(800, screenHeight);
    const RECT rect = RectOf(Program().Window());
    EXPECT_EQ(rect.right - rect.left, width);
    EXPECT_EQ(rect.bottom - rect.top, height);
    EXPECT_EQ(rect.left, (screenWidth - width) / 2);
    EXPECT_EQ(rect.top, (screenHeight - height) / 2);
}

TEST_F(WindowFactsTest, MainWindowHasACaptionWithoutSizingBorderOrMaximiseBox) {
    Start();
    const HWND window = Program().Window();
    const DWORD style = StyleOf(window);
    EXPECT_EQ(style & (WS_SYSMENU | WS_MINIMIZEBOX), DWORD{WS_SYSMENU | WS_MINIMIZEBOX});
    EXPECT_EQ(style & WS_CAPTION, DWORD{WS_CAPTION});
    EXPECT_EQ(style & (WS_THICKFRAME | WS_MAXIMIZEBOX) & ~DWORD{WS_TABSTOP}, 0u);
    EXPECT_EQ(style & (WS_CLIPCHILDREN | WS_CHILD | WS_POPUP), 0u);
    EXPECT_EQ(ExtendedStyleOf(window) & ~DWORD{WS_EX_WINDOWEDGE}, 0u);
    EXPECT_EQ(Program().Caption(), L"");
    EXPECT_EQ(GetParent(window), nullptr);
    EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
}

TEST_F(WindowFactsTest, ClassesHaveTheirNamesAndIcons) {
    Start();
    ProbeClass main = Program().Ask(ProbeRequest::Class, Program().Window()).windowClass;
    EXPECT_STREQ(main.name, L"Main Window Class");
    EXPECT_TRUE(main.hasIcon);
    EXPECT_TRUE(main.hasSmallIcon);
    EXPECT_EQ(main.style, 0u);
    EXPECT_FALSE(main.hasBackground);
    EXPECT_FALSE(main.hasCursor);
    ProbeClass render =
        Program().Ask(ProbeRequest::Class, Program().Child(renderWindowId)).windowClass;
    EXPECT_STREQ(render.name, L"Render Window Class");
    EXPECT_FALSE(render.hasIcon);
    EXPECT_FALSE(render.hasSmallIcon);
    EXPECT_EQ(render.style, 0u);
    EXPECT_FALSE(render.hasBackground);
    EXPECT_FALSE(render.hasCursor);
}

TEST_F(WindowFactsTest, ItStartsWithoutItsIconFile) {
    std::filesystem::remove(File("zelmo.ico"));
    Start();
    EXPECT_FALSE(Program().Ask(ProbeRequest::Class, Program().Window()).windowClass.hasIcon);
    EXPECT_EQ(Program().MenuStates(), "...LA");
}

TEST_F(WindowFactsTest, ThreeChildrenHaveTheirIdsClassesAndStyles) {
    Start();
    EXPECT_EQ(ChildrenOf(Program().Window()).size(), 3u);
    const HWND status = Program().Child(statusBarId);
    EXPECT_EQ(ClassNameOf(status), L"msctls_statusbar32");
    EXPECT_EQ(StyleOf(status) & (WS_CHILD | WS_VISIBLE), DWORD{WS_CHILD | WS_VISIBLE});
    EXPECT_EQ(StyleOf(status) & (WS_BORDER | SBARS_SIZEGRIP), 0u);
    const HWND console = Program().Child(consoleId);
    EXPECT_EQ(ClassNameOf(console), L"Edit");
    EXPECT_EQ(StyleOf(console) & ~DWORD{WS_CLIPSIBLINGS} & ~DWORD{WS_BORDER},
              0x50A00844u & ~DWORD{WS_BORDER});
    EXPECT_EQ(ExtendedStyleOf(console), DWORD{WS_EX_CLIENTEDGE});
    const HWND render = Program().Child(renderWindowId);
    EXPECT_EQ(ClassNameOf(render), L"Render Window Class");
    EXPECT_EQ(StyleOf(render) & ~DWORD{WS_CLIPSIBLINGS}, 0x50800000u);
    EXPECT_EQ(ExtendedStyleOf(render), 0u);
}

TEST_F(WindowFactsTest, ThePictureTakesSixtyPercentAndTheConsoleTheRest) {
    Start();
    const RECT client = ClientOf(Program().Window());
    const RECT status = RectInParent(Program().Child(statusBarId));
    const int pictureHeight = static_cast<int>(static_cast<float>(client.bottom) * 0.6f);
    const RECT render = RectInParent(Program().Child(renderWindowId));
    EXPECT_EQ(render.left, 0);
    EXPECT_EQ(render.top, 0);
    EXPECT_EQ(render.right, client.right);
    EXPECT_EQ(render.bottom, pictureHeight);
    const RECT console = RectInParent(Program().Child(consoleId));
    EXPECT_EQ(console.left, 0);
    EXPECT_EQ(console.top, pictureHeight);
    EXPECT_EQ(console.right, client.right);
    EXPECT_EQ(console.bottom, client.bottom - (status.bottom - status.top));
    EXPECT_EQ(status.bottom, client.bottom);
    EXPECT_EQ(status.right, client.right);
}

TEST_F(WindowFactsTest, MinimisingAndRestoringLaysOutAgain) {
    Start();
    const RECT before = RectInParent(Program().Child(consoleId));
    ShowWindow(Program().Window(), SW_MINIMIZE);
    WaitFor("the minimised window", [&] { return IsIconic(Program().Window()) != 0; });
    ShowWindow(Program().Window(), SW_RESTORE);
    WaitFor("the restored layout", [&] {
        const RECT now = RectInParent(Program().Child(consoleId));
        return !IsIconic(Program().Window()) && EqualRect(&before, &now);
    });
}

TEST_F(WindowFactsTest, FontsOfConsoleAndStatusBar) {
    Start();
    LOGFONTW font = Program().Ask(ProbeRequest::Font, Program().Child(consoleId)).font;
    EXPECT_EQ(font.lfHeight, 14);
    EXPECT_EQ(font.lfWidth, 0);
    EXPECT_EQ(font.lfEscapement, 0);
    EXPECT_EQ(font.lfOrientation, 650);
    EXPECT_EQ(font.lfWeight, 0);
    EXPECT_EQ(font.lfItalic, 0);
    EXPECT_EQ(font.lfUnderline, 0);
    EXPECT_EQ(font.lfStrikeOut, 0);
    EXPECT_EQ(font.lfCharSet, 1);
    EXPECT_EQ(font.lfOutPrecision, 8);
    EXPECT_EQ(font.lfClipPrecision, 0);
    EXPECT_EQ(font.lfQuality, 5);
    EXPECT_EQ(font.lfPitchAndFamily, 2);
    EXPECT_STREQ(font.lfFaceName, L"Consolas");
    font = Program().Ask(ProbeRequest::Font, Program().Child(statusBarId)).font;
    EXPECT_EQ(font.lfHeight, 11);
    EXPECT_EQ(font.lfOrientation, 0);
    EXPECT_EQ(font.lfWeight, 0);
    EXPECT_EQ(font.lfCharSet, 1);
    EXPECT_EQ(font.lfOutPrecision, 0);
    EXPECT_EQ(font.lfQuality, 0);
    EXPECT_EQ(font.lfPitchAndFamily, 0);
    EXPECT_STREQ(font.lfFaceName, L"");
}

TEST_F(WindowFactsTest, MenuBarHasFiveEntriesWithoutDropDowns) {
    Start();
    const ProbeMemory& memory = Program().Ask(ProbeRequest::Menu);
    const std::pair<UINT, const wchar_t*> entries[] = {{10, L"&Save images"},
                                                       {4, L"&Run Process"},
                                                       {6, L"&Stop"},
                                                       {8, L"&Load GDSII"},
                                                       {7, L"&About"}};
    ASSERT_EQ(memory.menuItems, 5);
    for (std::size_t i = 0; i < std::size(entries); ++i) {
        EXPECT_EQ(memory.menu[i].id, entries[i].first);
        EXPECT_STREQ(memory.menu[i].text, entries[i].second);
        EXPECT_FALSE(memory.menu[i].opensMenu);
    }
    EXPECT_EQ(Program().MenuStates(), "...LA");
}

TEST_F(WindowFactsTest, StatusBarHasFourParts) {
    Start();
    const HWND status = Program().Child(statusBarId);
    EXPECT_EQ(SendMessageW(status, SB_GETPARTS, 0, 0), 4);
    EXPECT_EQ(Program().StatusText(0), L"GDS file:");
    EXPECT_EQ(Program().StatusText(1), L"Not loaded");
    EXPECT_EQ(Program().StatusText(2), L"Process file:");
    EXPECT_EQ(Program().StatusText(3), L"Not loaded");
    const std::vector<int> edges = Program().StatusEdges();
    EXPECT_EQ(edges, (std::vector<int>{80, 600, 680, 1200}));
}

TEST_F(WindowFactsTest, TheConsoleWelcomes) {
    Start();
    EXPECT_EQ(Program().ConsoleText(),
              L"Select menu \"Load GDS\" to load a GDSII database and then menu \"Run Process\" to "
              L"select and run a process file\r\n");
}

TEST_F(WindowFactsTest, ThePixelFormatCanDrawAndSwap) {
    Start();
    const ProbeMemory& memory =
        Program().Ask(ProbeRequest::PixelFormat, Program().Child(renderWindowId));
    EXPECT_GT(memory.number, 0);
    EXPECT_EQ(
        memory.pixelFormat.dwFlags & (PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL),
        DWORD{PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL});
    EXPECT_EQ(memory.pixelFormat.iPixelType, PFD_TYPE_RGBA);
    EXPECT_GE(memory.pixelFormat.cDepthBits, 16);
}

TEST_F(WindowFactsTest, ReadOnlyConsoleIsWhite) {
    Start();
    const ProbeMemory& console =
        Program().Ask(ProbeRequest::ConsoleColors, Program().Child(consoleId));
    EXPECT_EQ(console.number, 1);
    EXPECT_EQ(console.background, 0xFFFFFFu);
    EXPECT_EQ(console.brush.lbStyle, UINT{BS_SOLID});
    EXPECT_EQ(console.brush.lbColor, 0xFFFFFFu);
    const ProbeMemory& other =
        Program().Ask(ProbeRequest::ConsoleColors, Program().Child(statusBarId));
    EXPECT_EQ(other.number, 0);
    EXPECT_EQ(other.background, 0u);
}

TEST_F(WindowFactsTest, MessagesHaveTheirResults) {
    Start();
    const HWND window = Program().Window();
    const auto windowNumber = reinterpret_cast<WPARAM>(window);
    EXPECT_EQ(SendMessageW(window, WM_SETCURSOR, windowNumber, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)),
              1);
    EXPECT_EQ(SendMessageW(window, WM_SIZE, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5)), 0);
    EXPECT_EQ(SendMessageW(window, WM_KEYDOWN, VK_ESCAPE, 1), 0);
    EXPECT_EQ(SendMessageW(window, WM_KEYDOWN, 'A', 1), 0);
    EXPECT_EQ(SendMessageW(window, WM_COMMAND, 5, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_COMMAND, 9, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_ENTERSIZEMOVE, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_EXITSIZEMOVE, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_KILLFOCUS, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_MOUSEWHEEL, 0, 0), 0);
    EXPECT_EQ(Program().ConsoleLines().size(), 1u);
    EXPECT_EQ(Program().Ask(ProbeRequest::Cursor).number, 1);
    EXPECT_EQ(SendMessageW(window, WM_CLOSE, 0, 0), 0);
    EXPECT_EQ(Program().WaitForExit(), 0u);
}

TEST_F(WindowFactsTest, DestroyOfEitherWindowEndsTheProgram) {
    for (const int id : {0, renderWindowId}) {
        Start();
        const HWND window = id == 0 ? Program().Window() : Program().Child(id);
        EXPECT_EQ(SendMessageW(window, WM_DESTROY, 0, 0), 0);
        EXPECT_EQ(Program().WaitForExit(), 0u);
        program_.reset();
    }
}

TEST_F(WindowFactsTest, APaintBeforeTheFirstPictureLeavesNothingToPaint) {
    Start();
    EXPECT_EQ(Program().Ask(ProbeRequest::HasContext).number, 1);
    // The screen may ask for a paint of its own in between.
    WaitFor("a paint that leaves nothing",
            [&] { return Program().Ask(ProbeRequest::Repaint, LPARAM{1}).number == 0; });
}

}  // namespace zelmo
