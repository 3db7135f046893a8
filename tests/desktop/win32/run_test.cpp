#include "base/text.h"
#include "base/version.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

using Lines = std::vector<std::wstring>;

const Lines stopLines = {L"",
                         L"Handling \"Stop\" request: wait for current process step to complete"};
const Lines closeLines = {L"", L"Closing application: wait for current process thread to complete"};

/// The lines from the first "Executing" on.
Lines StepLines(const DesktopProgram& program) {
    const Lines lines = MaskTimes(program.ConsoleLines());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].starts_with(L"Executing ")) {
            return {lines.begin() + static_cast<std::ptrdiff_t>(i), lines.end()};
        }
    }
    return {};
}

Lines Joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const Lines firstStep = {L"Executing Substrate ...", L"Completed in # s"};
const Lines secondStep = {L"Executing Oxide deposition ...", L"Completed in # s"};
const Lines thirdStep = {L"Executing Nitride deposition ...", L"Completed in # s"};
const Lines runEnd = {L"All process steps completed in # sec", L"",
                      L"Use left and right arrows to browse through the process steps"};

}  // namespace

using WindowRunTest = WindowTest;

TEST_F(WindowRunTest, ConsoleOfLoadAndRunIsWhatTheBatchProgramPrints) {
    StartWithLayout();
    Lines shown = Program().ConsoleLines();
    Program().RunToEnd(Process());
    const Lines run = Program().ConsoleLines();
    shown.insert(shown.end(), run.begin(), run.end());
    const Lines printed = RunBatch(folder_.Path(), L"-o batch \"" + Layout().wstring() + L"\" \"" +
                                                       Process().wstring() + L"\"");
    EXPECT_EQ(MaskTimes(shown), MaskTimes(printed));
    EXPECT_EQ(Program().StatusText(3), Process().wstring());
    EXPECT_EQ(Program().MenuStates(), "SR.LA");
}

TEST_F(WindowRunTest, AProcessWithoutStepsStillRunsTheSubstrate) {
    StartWithLayout();
    WriteProcess("empty.txt", "");
    Program().RunToEnd(File("empty.txt"));
    EXPECT_EQ(Program().Caption(), L"001 Substrate");
    EXPECT_EQ(StepLines(Program()), Joined({firstStep, runEnd}));
}

TEST_F(WindowRunTest, MenuAndContextWhileAStepRuns) {
    StartWithLayout();
    Program().RunAndHold(Process(), 1);
    EXPECT_EQ(Program().MenuStates(), "..T.A");
    EXPECT_EQ(Program().Ask(ProbeRequest::HasContext).number, 0);
    // Painting finds no context and is over at once.
    Program().Ask(ProbeRequest::Repaint, LPARAM{3});
    EXPECT_EQ(StepLines(Program()), firstStep);
    EXPECT_EQ(Program().Caption(), L"");
    Program().Release();
    Program().WaitForMenu("SR.LA");
    EXPECT_EQ(Program().Ask(ProbeRequest::HasContext).number, 1);
}

TEST_F(WindowRunTest, StopLetsTheStepFinishAndKeepsItsPicture) {
    StartWithLayout();
    Program().RunAndHold(Process(), 2);
    Program().Command(stopCommand);
    Program().WaitForMenu("....A");
    Program().Release();
    Program().WaitForMenu("SR.LA");
    EXPECT_EQ(StepLines(Program()), Joined({firstStep, secondStep, stopLines, runEnd}));
    EXPECT_EQ(Program().Caption(), L"002 Oxide deposition");
    Program().KeyTo(VK_RIGHT, L"001 Substrate");
    Program().KeyTo(VK_RIGHT, L"002 Oxide deposition");
}

TEST_F(WindowRunTest, ARunAfterAStopBeginsAnewAndCountsOn) {
    StartWithLayout();
    Program().RunAndHold(Process(), 1);
    Program().Command(stopCommand);
    Program().WaitForMenu("....A");
    Program().Release();
    Program().WaitForMenu("SR.LA");
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"004 Nitride deposition");
    Program().KeyTo(VK_RIGHT, L"002 Substrate");
}

TEST_F(WindowRunTest, CloseDuringAStepWaitsForItsEnd) {
    StartWithLayout();
    Program().RunAndHold(Process(), 2);
    PostMessageW(Program().Window(), WM_CLOSE, 0, 0);
    WaitFor("the answer to the close", [&] { return Program().HasLine(closeLines[1]); });
    EXPECT_EQ(StepLines(Program()), Joined({firstStep, secondStep, closeLines}));
    EXPECT_TRUE(IsWindowVisible(Program().Window()));
    EXPECT_FALSE(Program().HasEnded());
    Program().Release();
    EXPECT_EQ(Program().WaitForExit(), 0u);
}

TEST_F(WindowRunTest, StopThenCloseTwiceWritesTheLinesOfEach) {
    StartWithLayout();
    Program().RunAndHold(Process(), 1);
    const HWND window = Program().Window();
    Program().Command(stopCommand);
    Program().WaitForMenu("....A");
    EXPECT_EQ(SendMessageW(window, WM_CLOSE, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, WM_CLOSE, 0, 0), 0);
    EXPECT_EQ(StepLines(Program()), Joined({firstStep, stopLines, closeLines, closeLines}));
    Program().Release();
    EXPECT_EQ(Program().WaitForExit(), 0u);
}

TEST_F(WindowRunTest, ARunGoesOnBehindTheAboutBox) {
    StartWithLayout();
    Program().Command(aboutCommand);
    const HWND box = Program().WaitForDialog(L"Zelmo " + WidenBytes(programVersion));
    // All of the run is served by the message loop of the box.
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().FindDialog(L"Zelmo " + WidenBytes(programVersion)), box);
    EXPECT_EQ(Program().Caption(), L"003 Nitride deposition");
    Program().CloseMessage(box);
    Program().KeyTo(VK_LEFT, L"002 Oxide deposition");
}

TEST_F(WindowRunTest, ArrowKeyWithoutPicturesEndsTheProgram) {
    for (const WPARAM key : {WPARAM{VK_LEFT}, WPARAM{VK_RIGHT}}) {
        Start();
        Program().Key(key);
        EXPECT_EQ(Program().WaitForExit(), 3u);
        program_.reset();
    }
}

TEST_F(WindowRunTest, ArrowKeySentByAnotherProgramEndsTheProgramToo) {
    Start();
    SendMessageW(Program().Window(), WM_KEYDOWN, VK_LEFT, 1);
    EXPECT_EQ(Program().WaitForExit(), 3u);
}

TEST_F(WindowRunTest, ArrowKeyDuringTheFirstStepEndsTheProgram) {
    StartWithLayout();
    Program().RunAndHold(Process(), 1);
    Program().Key(VK_LEFT);
    EXPECT_EQ(Program().WaitForExit(), 3u);
}

TEST_F(WindowRunTest, ArrowKeysDuringALaterStepChangeTheCaptionUntilItsEnd) {
    StartWithLayout();
    Program().RunAndHold(Process(), 3);
    EXPECT_EQ(Program().Caption(), L"002 Oxide deposition");
    Program().KeyTo(VK_LEFT, L"001 Substrate");
    Program().Release();
    Program().WaitForMenu("SR.LA");
    EXPECT_EQ(Program().Caption(), L"003 Nitride deposition");
}

TEST_F(WindowRunTest, BrowsingWrapsInBothDirections) {
    StartWithLayout();
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"003 Nitride deposition");
    Program().KeyTo(VK_RIGHT, L"001 Substrate");
    Program().KeyTo(VK_RIGHT, L"002 Oxide deposition");
    Program().KeyTo(VK_LEFT, L"001 Substrate");
    Program().KeyTo(VK_LEFT, L"003 Nitride deposition");
    // Other keys do nothing.
    Program().Key(VK_ESCAPE);
    Program().Key(VK_UP);
    Program().Key(VK_SPACE);
    Program().KeyTo(VK_LEFT, L"002 Oxide deposition");
}

TEST_F(WindowRunTest, ASecondRunCountsOnAndReplacesThePictures) {
    StartWithLayout();
    Program().RunToEnd(Process());
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"006 Nitride deposition");
    Program().KeyTo(VK_RIGHT, L"004 Substrate");
    Program().Command(saveCommand);
    Program().WaitForLine(L"Saving images completed");
    ASSERT_EQ(FoldersBeside("flow ").size(), 1u);
    EXPECT_TRUE(
        std::filesystem::exists(FoldersBeside("flow ")[0] / "002 005 Oxide deposition.bmp"));
}

}  // namespace zelmo
