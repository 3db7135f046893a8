#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/text.h"
#include "base/version.h"
#include "examples/gds_writer.h"
#include "tests/desktop/desktop.h"
#include "tests/support/gzip_writer.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

struct MenuState {
    bool saveImages, runProcess, stop, loadGds, about;
    bool operator==(const MenuState&) const = default;
};

MenuState Menu(const Desktop& desktop) {
    const NullPlatform& platform = desktop.platform;
    return {platform.Enabled(MenuEntry::SaveImages), platform.Enabled(MenuEntry::RunProcess),
            platform.Enabled(MenuEntry::Stop), platform.Enabled(MenuEntry::LoadGds),
            platform.Enabled(MenuEntry::About)};
}

std::vector<fs::path> Folders(const Desktop& desktop) {
    std::vector<fs::path> folders;
    for (const auto& entry : fs::directory_iterator(desktop.Folder())) {
        if (entry.is_directory()) {
            folders.push_back(entry.path());
        }
    }
    return folders;
}

TEST(Commands, MenuFollowsTheStateOfTheProgram) {
    Desktop desktop;
    EXPECT_EQ(Menu(desktop), (MenuState{false, false, false, true, true}));
    desktop.LoadLayout();
    EXPECT_EQ(Menu(desktop), (MenuState{false, true, false, true, true}));
    desktop.DuringStep(L"layer1 deposition", [&] {
        EXPECT_EQ(Menu(desktop), (MenuState{false, false, true, false, true}));
        desktop.window.HandleStop();
        EXPECT_EQ(Menu(desktop), (MenuState{false, false, false, false, true}));
    });
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    EXPECT_EQ(Menu(desktop), (MenuState{true, true, false, true, true}));
}

TEST(Commands, EveryEntryButAboutIsGreyWhileACommandAsksForItsFile) {
    Desktop desktop;
    desktop.LoadLayout();
    std::vector<MenuState> seen;
    desktop.platform.ObserveLines([&](const std::wstring& line) {
        if (line == L"--- Handling \"Run\" command ---" || line == L"GDS file selection failed" ||
            line == L"Process file selection failed") {
            seen.push_back(Menu(desktop));
        }
    });
    desktop.window.HandleRun();
    desktop.window.HandleLoadGds();
    ASSERT_EQ(seen.size(), 3u);
    for (const MenuState& state : seen) {
        EXPECT_EQ(state, (MenuState{false, false, false, false, true}));
    }
    EXPECT_EQ(Menu(desktop), (MenuState{false, true, false, true, true}));
}

TEST(Commands, StartWritesTheWelcome) {
    Desktop desktop;
    EXPECT_EQ(desktop.Lines(),
              (std::vector<std::wstring>{
                  L"Select menu \"Load GDS\" to load a GDSII database and then menu \"Run "
                  L"Process\" to select and run a process file"}));
}

TEST(Commands, LoadGdsReportsTheLoadAndShowsTheFile) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto lines = desktop.Lines();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[0], L"--- Handling \"Load GDS\" command ---");
    EXPECT_EQ(lines[1], L"Loading GDS database " + PathText(desktop.LayoutFile()) +
                            L" and calculating cell sizes");
    EXPECT_EQ(lines[2], L"");
    EXPECT_EQ(lines[3], L"CELLS IN DATABASE (database units):");
    EXPECT_EQ(lines[4], L"--> \"TOP\" with size dx = 6000 by dy = 6000");
    EXPECT_EQ(lines[5], L"");
    EXPECT_EQ(lines[6].substr(0, 33), L"GDS database finished loading in ");
    EXPECT_EQ(desktop.platform.StatusText(StatusField::GdsFile), PathText(desktop.LayoutFile()));
    const FileQuestion& question = desktop.platform.FileQuestions().back();
    EXPECT_EQ(question.title, L"Open GDS file");
    EXPECT_EQ(question.filterName, L"GDS Files (*.gds)");
    EXPECT_EQ(question.pattern, L"*.gds");
    EXPECT_EQ(question.defaultExtension, L"gds");
}

TEST(Commands, FailedLoadKeepsTheGoodDatabase) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.platform.AnswerNextFileQuestion(desktop.Folder() / "missing.gds");
    desktop.window.HandleLoadGds();
    EXPECT_EQ(desktop.Lines().back(), L"Loading GDS database failed with error 2");
    EXPECT_EQ(desktop.platform.StatusText(StatusField::GdsFile), PathText(desktop.LayoutFile()));
    EXPECT_TRUE(desktop.platform.Enabled(MenuEntry::RunProcess));
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
}

TEST(Commands, ACompressedLayoutLoadsWhateverItsName) {
    Desktop desktop;
    const std::filesystem::path path = desktop.Folder() / "packed.gds";
    const auto write = [&](const std::vector<std::uint8_t>& bytes) {
        std::ofstream stream(path, std::ios::binary);
        stream.write(reinterpret_cast<const char*>(bytes.data()),
                     static_cast<std::streamsize>(bytes.size()));
    };
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("PACKED");
    writer.EndCell();
    writer.EndLibrary();
    std::vector<std::uint8_t> packed = Gzipped(writer.Bytes());
    write(packed);
    desktop.platform.AnswerNextFileQuestion(path);
    desktop.window.HandleLoadGds();
    EXPECT_TRUE(desktop.HasLine(L"--> \"PACKED\" with size dx = 0 by dy = 0"));
    EXPECT_TRUE(desktop.platform.Enabled(MenuEntry::RunProcess));
    packed.back() ^= 1;
    write(packed);
    desktop.platform.AnswerNextFileQuestion(path);
    desktop.window.HandleLoadGds();
    EXPECT_EQ(desktop.Lines().back(), L"Loading GDS database failed with error 2");
}

TEST(Commands, LoadingAnotherLayoutLeavesThePictures) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    desktop.LoadLayout();
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    EXPECT_TRUE(desktop.platform.Enabled(MenuEntry::SaveImages));
}

TEST(Commands, RunAsksForAProcessFileAndShowsIt) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto file = desktop.ProcessFile(0);
    desktop.StartRun(file);
    desktop.FinishRun();
    EXPECT_EQ(desktop.platform.StatusText(StatusField::ProcessFile), PathText(file));
    EXPECT_EQ(desktop.Lines().front(), L"--- Handling \"Run\" command ---");
    const FileQuestion& question = desktop.platform.FileQuestions().back();
    EXPECT_EQ(question.title, L"Open process file");
    EXPECT_EQ(question.filterName, L"Text Files (*.txt)");
    EXPECT_EQ(question.pattern, L"*.txt");
    EXPECT_EQ(question.defaultExtension, L"txt");
}

TEST(Commands, CancelledRunKeepsPicturesAndTheirEntry) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    desktop.window.HandleRun();
    EXPECT_EQ(desktop.Lines(), (std::vector<std::wstring>{L"--- Handling \"Run\" command ---",
                                                          L"Process file selection failed"}));
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    EXPECT_TRUE(desktop.platform.Enabled(MenuEntry::SaveImages));
}

TEST(Commands, CancelledRunClearsAPendingStop) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.DuringStep(L"Substrate", [&] { desktop.window.HandleStop(); });
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    desktop.window.HandleRun();
    desktop.platform.ObserveLines(nullptr);
    desktop.StartRun(desktop.ProcessFile(3));
    desktop.FinishRun();
    EXPECT_EQ(desktop.window.Pictures().images.size(), 4u);
}

TEST(Commands, RefusedProcessFileKeepsModelPicturesAndTheNameForSaving) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto good = desktop.ProcessFile(1, "good.txt");
    desktop.StartRun(good);
    desktop.FinishRun();
    const ProcessModel* model = desktop.window.Model();
    const auto bad = desktop.Folder() / "bad.txt";
    std::ofstream(bad) << "nonsense\n";
    desktop.StartRun(bad);
    EXPECT_FALSE(desktop.window.Running());
    EXPECT_EQ(desktop.window.Model(), model);
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    EXPECT_EQ(desktop.platform.StatusText(StatusField::ProcessFile), PathText(good));
    EXPECT_EQ(desktop.Lines().back(),
              L"Opening process file " + PathText(bad) + L" failed with error(s) given above");
    desktop.window.HandleSaveImages();
    const auto folders = Folders(desktop);
    ASSERT_EQ(folders.size(), 1u);
    EXPECT_EQ(PathText(folders[0].filename()).substr(0, 5), L"good ");
}

TEST(Commands, SaveImagesWritesEveryPictureIntoANewFolder) {
    Desktop desktop;
    desktop.LoadLayout();
    desktop.StartRun(desktop.ProcessFile(1));
    desktop.FinishRun();
    desktop.window.HandleSaveImages();
    const auto folders = Folders(desktop);
    ASSERT_EQ(folders.size(), 1u);
    const std::wstring folder = PathText(folders[0]);
    EXPECT_EQ(desktop.Lines(), (std::vector<std::wstring>{
                                   L"--- Handling \"Save images\" command ---",
                                   L"Saving images to folder \"" + folder + L"\". Please wait ...",
                                   L"Saving images completed"}));
    EXPECT_TRUE(fs::exists(folders[0] / "001 001 Substrate.bmp"));
    const fs::path second = folders[0] / "002 002 layer1 deposition.bmp";
    std::ifstream stream(second, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    ASSERT_EQ(bytes.size(), 54u + 24u);
    EXPECT_EQ(bytes.substr(0, 2), "BM");
    EXPECT_EQ(bytes.substr(54), std::string(24, '\2'));
    EXPECT_EQ(Menu(desktop), (MenuState{true, true, false, true, true}));
}

TEST(Commands, SavingTwiceWithinASecondFailsWithAMessage) {
    // Two saves in a row nearly always fall into one second; a pair that did not is tried again.
    for (int attempt = 0; attempt < 10; ++attempt) {
        Desktop desktop;
        desktop.LoadLayout();
        desktop.StartRun(desktop.ProcessFile(0));
        desktop.FinishRun();
        desktop.window.HandleSaveImages();
        desktop.window.HandleSaveImages();
        if (Folders(desktop).size() == 2) {
            continue;
        }
        ASSERT_EQ(desktop.platform.Messages().size(), 1u);
        const auto& message = desktop.platform.Messages()[0];
        EXPECT_EQ(message.caption, L"Zelmo");
        EXPECT_EQ(message.text, L"Images not saved. Failed to create output folder \"" +
                                    PathText(Folders(desktop).at(0)) + L"\".");
        EXPECT_EQ(desktop.window.Pictures().images.size(), 1u);
        EXPECT_EQ(Menu(desktop), (MenuState{true, true, false, true, true}));
        return;
    }
    FAIL() << "no two saves fell into one second";
}

TEST(Commands, PictureThatCannotBeWrittenIsReportedAndTheOthersAreSaved) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto file = desktop.Folder() / "flow.txt";
    std::ofstream(file) << "settings -version 4 -N 200\nlocation -x 0 -y 0 -dx 8 -dy 2\n"
                           "gds -cell TOP\n"
                           "coating -name a/b -type x -thickness 100 -color 1 2 3 4\n"
                           "coating -name c -type x -thickness 100 -color 1 2 3 4\n";
    desktop.StartRun(file);
    desktop.FinishRun();
    desktop.window.HandleSaveImages();
    const auto lines = desktop.Lines();
    ASSERT_EQ(lines.size(), 4u);
    const auto folder = Folders(desktop).at(0);
    EXPECT_EQ(lines[2].substr(0, 25), L"Error while saving image ");
    EXPECT_NE(
        lines[2].find(L"002 002 a/b coating.bmp to output folder \"" + PathText(folder) + L"\""),
        std::wstring::npos);
    EXPECT_EQ(lines[3], L"Errors occurred saving images");
    EXPECT_TRUE(fs::exists(folder / "003 003 c coating.bmp"));
}

TEST(Commands, AboutTellsNameVersionAndFileVersionAndChangesNothing) {
    Desktop desktop;
    const MenuState before = Menu(desktop);
    desktop.window.HandleAbout();
    ASSERT_EQ(desktop.platform.Messages().size(), 1u);
    const auto& message = desktop.platform.Messages()[0];
    EXPECT_EQ(message.caption, L"Zelmo " + WidenBytes(programVersion));
    EXPECT_EQ(message.text.find(L"Zelmo: software to render semicon process cross sections \n\n"),
              0u);
    EXPECT_NE(message.text.find(L"Zelmo developers"), std::wstring::npos);
    const std::wstring end = L"\n\nFor process file version 4";
    EXPECT_EQ(message.text.substr(message.text.size() - end.size()), end);
    EXPECT_EQ(Menu(desktop), before);
}

TEST(Commands, AHundredCommandsInAnyOrderLeaveAUsableProgram) {
    Desktop desktop;
    desktop.LoadLayout();
    const auto file = desktop.ProcessFile(1);
    unsigned state = 12345;
    for (int i = 0; i < 100; ++i) {
        state = state * 1664525u + 1013904223u;
        switch ((state >> 16) % 6) {
            case 0:
                desktop.LoadLayout();
                break;
            case 1:
                desktop.StartRun(file);
                desktop.FinishRun();
                break;
            case 2:
                desktop.window.HandleRun();
                break;
            case 3:
                desktop.window.HandleAbout();
                break;
            case 4:
                desktop.window.HandleLoadGds();
                break;
            default:
                if (desktop.platform.Enabled(MenuEntry::SaveImages)) {
                    desktop.window.HandleLeftKey();
                }
                break;
        }
        ASSERT_FALSE(desktop.window.Running());
    }
    desktop.StartRun(file);
    desktop.FinishRun();
    EXPECT_EQ(desktop.window.Pictures().images.size(), 2u);
    EXPECT_EQ(desktop.platform.ContextConflicts(), 0);
}

}  // namespace
}  // namespace zelmo
