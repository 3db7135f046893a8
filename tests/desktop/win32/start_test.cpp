#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

const std::wstring colorMessage =
    L"Could not load color file or color file contains errors. Redo installation.";

}  // namespace

class StartTest : public WindowTest {
protected:
    /// Starts the program and confirms the box that it shows; it must end well without a window.
    void ExpectRefusal(const std::wstring& message) {
        program_ = std::make_unique<DesktopProgram>(folder_.Path());
        const HWND box = Program().WaitForDialog(L"Zelmo");
        EXPECT_EQ(DesktopProgram::MessageText(box), message);
        const HWND window = Program().FindMainWindow();
        ASSERT_NE(window, nullptr);
        EXPECT_FALSE(IsWindowVisible(window));
        EXPECT_EQ(GetWindow(box, GW_OWNER), window);
        Program().CloseMessage(box);
        EXPECT_EQ(Program().WaitForExit(), 0u);
    }
};

TEST_F(StartTest, MissingColorFileEndsTheProgramWithAMessage) {
    std::filesystem::remove(File("colors.txt"));
    ExpectRefusal(colorMessage);
}

TEST_F(StartTest, FaultyColorFileEndsTheProgramWithAMessage) {
    folder_.Write("colors.txt", "beige #F5F5DC 245, 245, 220\nred #FF0000 255; 0; 0\n");
    ExpectRefusal(colorMessage);
}

TEST_F(StartTest, EmptyColorFileIsNoFault) {
    folder_.Write("colors.txt", "# no colours\n\n");
    Start();
    EXPECT_EQ(Program().MenuStates(), "...LA");
}

TEST_F(StartTest, MissingSurfaceShaderIsLoggedAndTheProgramStarts) {
    std::filesystem::remove(File("surface.shader"));
    Start();
    const auto lines = Program().ConsoleLines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines.front(), L"Failed to open shader file: surface.shader");
    // Between stands what the driver says about a program of nothing.
    EXPECT_TRUE(lines.back().starts_with(L"Select menu \"Load GDS\""));
    EXPECT_EQ(Program().MenuStates(), "...LA");
}

TEST_F(StartTest, BothShadersMissingAreLoggedInOrderAndAProcessRunsAllTheSame) {
    std::filesystem::remove(File("surface.shader"));
    std::filesystem::remove(File("point.shader"));
    Start();
    const auto lines = Program().ConsoleLines();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines.front(), L"Failed to open shader file: surface.shader");
    EXPECT_TRUE(Program().HasLine(L"Failed to open shader file: point.shader"));
    EXPECT_TRUE(lines.back().starts_with(L"Select menu \"Load GDS\""));
    Program().Load(Layout());
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"003 Nitride deposition");
}

TEST_F(StartTest, CloseEndsTheProgram) {
    Start();
    PostMessageW(Program().Window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(Program().WaitForExit(), 0u);
}

}  // namespace zelmo
