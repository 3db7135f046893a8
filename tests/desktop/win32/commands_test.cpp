#include "base/text.h"
#include "base/version.h"
#include "examples/gds_writer.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

using Lines = std::vector<std::wstring>;

/// What the dialog offers as the kinds of files.
std::wstring FilterOf(HWND dialog) {
    constexpr int fileTypeCombo = 0x470;
    wchar_t text[128] = {};
    SendMessageW(GetDlgItem(dialog, fileTypeCombo), WM_GETTEXT, std::size(text),
                 reinterpret_cast<LPARAM>(text));
    return text;
}

}  // namespace

using WindowCommandsTest = WindowTest;

TEST_F(WindowCommandsTest, LoadAsksForAGdsFile) {
    Start();
    Program().Command(loadCommand);
    const HWND dialog = Program().WaitForDialog(L"Open GDS file");
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), Program().Window());
    WaitFor("the filter", [&] { return FilterOf(dialog) == L"GDS Files (*.gds)"; });
    EXPECT_EQ(Program().MenuStates(), "....A");
    Program().Cancel(dialog);
    Program().WaitForMenu("...LA");
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Load GDS\" command ---", L"GDS file selection failed"}));
    EXPECT_EQ(Program().StatusText(1), L"Not loaded");
}

TEST_F(WindowCommandsTest, LoadListsTheCellsAndShowsTheFile) {
    StartWithLayout();
    EXPECT_EQ(Program().MenuStates(), ".R.LA");
    EXPECT_EQ(Program().StatusText(1), Layout().wstring());
    EXPECT_EQ(Program().StatusText(3), L"Not loaded");
    EXPECT_EQ(MaskTimes(Program().ConsoleLines()),
              (Lines{L"--- Handling \"Load GDS\" command ---",
                     L"Loading GDS database " + Layout().wstring() + L" and calculating cell sizes",
                     L"", L"CELLS IN DATABASE (database units):",
                     L"--> \"TOP\" with size dx = 7000 by dy = 7000", L"",
                     L"GDS database finished loading in # s"}));
}

TEST_F(WindowCommandsTest, AFailedLoadKeepsTheLayoutBefore) {
    StartWithLayout();
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Reference("MISSING", {0, 0});
    writer.EndCell();
    writer.EndLibrary();
    writer.Save(File("broken.gds"));
    Program().Command(loadCommand);
    Program().ChooseFile(Program().WaitForDialog(L"Open GDS file"), File("broken.gds"));
    Program().WaitForMenu(".R.LA");
    const auto lines = Program().ConsoleLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines.back().starts_with(L"Loading GDS database failed with error "))
        << Utf8FromWide(lines.back());
    EXPECT_EQ(Program().StatusText(1), Layout().wstring());
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"003 Nitride deposition");
}

TEST_F(WindowCommandsTest, RunAsksForATextFile) {
    StartWithLayout();
    Program().Command(runCommand);
    const HWND dialog = Program().WaitForDialog(L"Open process file");
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), Program().Window());
    WaitFor("the filter", [&] { return FilterOf(dialog) == L"Text Files (*.txt)"; });
    EXPECT_EQ(Program().MenuStates(), "....A");
    Program().Cancel(dialog);
    Program().WaitForMenu(".R.LA");
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Run\" command ---", L"Process file selection failed"}));
}

TEST_F(WindowCommandsTest, CancellingTheRunDialogKeepsThePictures) {
    StartWithLayout();
    Program().RunToEnd(Process());
    Program().Command(runCommand);
    Program().Cancel(Program().WaitForDialog(L"Open process file"));
    Program().WaitForMenu("SR.LA");
    Program().KeyTo(VK_LEFT, L"002 Oxide deposition");
}

TEST_F(WindowCommandsTest, ARefusedProcessFileKeepsThePicturesAndTheirName) {
    StartWithLayout();
    Program().RunToEnd(Process());
    WriteProcess("bad.txt", "deposition -name Oxide\n");
    Program().Command(runCommand);
    Program().ChooseFile(Program().WaitForDialog(L"Open process file"), File("bad.txt"));
    Program().WaitForMenu("SR.LA");
    const auto lines = Program().ConsoleLines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_TRUE(lines[1].starts_with(L"Error in line 4: ")) << Utf8FromWide(lines[1]);
    EXPECT_EQ(Program().StatusText(3), Process().wstring());
    Program().KeyTo(VK_RIGHT, L"001 Substrate");
    Program().Command(saveCommand);
    Program().WaitForLine(L"Saving images completed");
    EXPECT_EQ(FoldersBeside("flow ").size(), 1u);
    EXPECT_TRUE(FoldersBeside("bad ").empty());
}

TEST_F(WindowCommandsTest, LoadingAnotherLayoutKeepsThePictures) {
    StartWithLayout();
    Program().RunToEnd(Process());
    Program().Load(Layout());
    EXPECT_EQ(Program().MenuStates(), "SR.LA");
    EXPECT_EQ(Program().StatusText(3), Process().wstring());
    Program().KeyTo(VK_LEFT, L"002 Oxide deposition");
}

TEST_F(WindowCommandsTest, AboutTellsTheVersion) {
    Start();
    Program().Command(aboutCommand);
    const HWND box = Program().WaitForDialog(L"Zelmo " + WidenBytes(programVersion));
    EXPECT_EQ(DesktopProgram::MessageText(box),
              L"Zelmo: software to render semicon process cross sections \n\n"
              L"Made by the Zelmo developers\n\nFor process file version 4");
    EXPECT_EQ(GetWindow(box, GW_OWNER), Program().Window());
    Program().CloseMessage(box);
    EXPECT_EQ(Program().MenuStates(), "...LA");
    EXPECT_EQ(Program().ConsoleLines().size(), 1u);
}

}  // namespace zelmo
