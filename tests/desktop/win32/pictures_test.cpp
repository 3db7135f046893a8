#include <algorithm>
#include <ctime>

#include "base/text.h"
#include "tests/desktop/win32/debug_output.h"
#include "tests/desktop/win32/window_fixture.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::wstring>;

std::uint32_t U32(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return bytes.at(offset) | bytes.at(offset + 1) << 8 | bytes.at(offset + 2) << 16 |
           static_cast<std::uint32_t>(bytes.at(offset + 3)) << 24;
}

/// A byte of the picture over white, as blending leaves it: exact but for its rounding.
int OverWhite(int value, int alpha) {
    return (value * alpha + 255 * (255 - alpha) + 127) / 255;
}

/// How many bytes of colour differ by more than one from the bitmap scaled to fit, by the nearest
/// pixel, in the middle of a white window.
std::size_t CountDifferences(const ShownPicture& shown, const std::vector<std::uint8_t>& bitmap) {
    const int width = static_cast<int>(U32(bitmap, 18));
    const int height = static_cast<int>(U32(bitmap, 22));
    const float scale = std::min(static_cast<float>(shown.height) / static_cast<float>(height),
                                 static_cast<float>(shown.width) / static_cast<float>(width));
    const int scaledWidth = static_cast<int>(static_cast<float>(width) * scale);
    const int scaledHeight = static_cast<int>(static_cast<float>(height) * scale);
    const int left = (shown.width - scaledWidth) / 2;
    const int bottom = (shown.height - scaledHeight) / 2;
    std::size_t differences = 0;
    for (int y = 0; y < shown.height; ++y) {
        for (int x = 0; x < shown.width; ++x) {
            const int column = x - left;
            const int row = y - bottom;
            const bool inside =
                column >= 0 && column < scaledWidth && row >= 0 && row < scaledHeight;
            const int sourceColumn = static_cast<int>(static_cast<float>(column) / scale);
            const int sourceRow = static_cast<int>(static_cast<float>(row) / scale);
            const auto source = 54 + static_cast<std::size_t>(sourceRow * width + sourceColumn) * 4;
            const auto target = static_cast<std::size_t>(y * shown.width + x) * 4;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const int expected =
                    inside ? OverWhite(bitmap.at(source + channel), bitmap.at(source + 3)) : 255;
                differences += std::abs(shown.pixels.at(target + channel) - expected) > 1;
            }
        }
    }
    return differences;
}

}  // namespace

class WindowPicturesTest : public WindowTest {
protected:
    /// Saves the pictures and returns the new folder.
    fs::path Save() {
        const auto before = FoldersBeside("flow ");
        Program().Command(saveCommand);
        Program().WaitForLine(L"Saving images completed");
        for (const fs::path& folder : FoldersBeside("flow ")) {
            if (std::find(before.begin(), before.end(), folder) == before.end()) {
                return folder;
            }
        }
        throw std::runtime_error("no folder was made");
    }
};

TEST_F(WindowPicturesTest, SavedFilesAreTheBatchProgramsToTheByte) {
    WriteProcess("flow.txt",
                 "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
                 "photo -name Resist -mask_id 1 -type 1 -res 0.2 -thickness 900 -taper 80\n"
                 "etch -name Oxide -targets oxide -depth 300 -iso 0.2\n"
                 "strip -name Resist\n"
                 "coating -name Glass -type glass -thickness 400 -dop 0.5 -color 20 200 90 50\n");
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path saved = Save();
    RunBatch(folder_.Path(), L"--format bmp -o batch square.gds flow.txt");
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(File("batch"))) {
        const fs::path same = saved / entry.path().filename();
        ASSERT_TRUE(fs::exists(same)) << same.string();
        EXPECT_TRUE(Bytes(same) == Bytes(entry.path())) << same.string();
        ++files;
    }
    EXPECT_EQ(files, 6u);
    EXPECT_EQ(std::distance(fs::directory_iterator(saved), fs::directory_iterator()), 6);
    EXPECT_TRUE(fs::exists(saved / "005 005 Resist photoresist strip.bmp"));
}

TEST_F(WindowPicturesTest, SavingTellsWhatItDoes) {
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path folder = Save();
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Save images\" command ---",
                     L"Saving images to folder \"" + folder.wstring() + L"\". Please wait ...",
                     L"Saving images completed"}));
    Program().WaitForMenu("SR.LA");
    const auto bytes = Bytes(folder / "003 003 Nitride deposition.bmp");
    EXPECT_EQ(bytes.at(0), 'B');
    EXPECT_EQ(bytes.at(1), 'M');
    EXPECT_EQ(U32(bytes, 10), 54u);
    EXPECT_EQ(U32(bytes, 18), 1920u);
    EXPECT_EQ(bytes.size(), 54 + 1920 * U32(bytes, 22) * 4);
}

TEST_F(WindowPicturesTest, TheSecondSaveWithinASecondIsRefusedInABox) {
    WriteProcess("one.txt", "");
    StartWithLayout();
    Program().RunToEnd(File("one.txt"));
    // Two saves may fall into two seconds; then the next two are tried.
    HWND box = nullptr;
    for (int attempt = 0; attempt < 20 && box == nullptr; ++attempt) {
        Sleep(1000);
        const std::size_t before = FoldersBeside("one ").size();
        Program().Command(saveCommand);
        Program().Command(saveCommand);
        WaitFor("the end of both saves", [&] {
            box = Program().FindDialog(L"Zelmo");
            return box != nullptr || (FoldersBeside("one ").size() == before + 2 &&
                                      Program().HasLine(L"Saving images completed"));
        });
    }
    ASSERT_NE(box, nullptr);
    const std::wstring text = DesktopProgram::MessageText(box);
    const std::wstring last = FoldersBeside("one ").back().wstring();
    EXPECT_EQ(Utf8FromWide(text),
              Utf8FromWide(L"Images not saved. Failed to create output folder \"" + last + L"\"."));
    EXPECT_EQ(Program().ConsoleLines(), (Lines{L"--- Handling \"Save images\" command ---"}));
    EXPECT_EQ(Program().MenuStates(), "....A");
    Program().CloseMessage(box);
    Program().WaitForMenu("SR.LA");
    // The first save of the two is whole.
    EXPECT_TRUE(fs::exists(fs::path(last) / "001 001 Substrate.bmp"));
}

TEST_F(WindowPicturesTest, AFolderThatExistsAlreadyIsRefusedInABox) {
    StartWithLayout();
    Program().RunToEnd(Process());
    // Folders for the next minutes stand already, as two saves within a second would find one.
    const std::time_t now = std::time(nullptr);
    for (int second = -1; second < 300; ++second) {
        const std::time_t time = now + second;
        std::tm local{};
        localtime_s(&local, &time);
        char stamp[64];
        std::strftime(stamp, sizeof stamp, "flow %Y-%m-%d %H-%M-%S", &local);
        fs::create_directory(File(stamp));
    }
    Program().Command(saveCommand);
    const HWND box = Program().WaitForDialog(L"Zelmo");
    const std::wstring text = DesktopProgram::MessageText(box);
    const std::wstring start =
        L"Images not saved. Failed to create output folder \"" + File("flow 2").wstring();
    EXPECT_TRUE(text.starts_with(start)) << Utf8FromWide(text);
    EXPECT_TRUE(text.ends_with(L"\".")) << Utf8FromWide(text);
    EXPECT_EQ(GetWindow(box, GW_OWNER), Program().Window());
    EXPECT_EQ(Program().MenuStates(), "....A");
    EXPECT_EQ(Program().ConsoleLines(), (Lines{L"--- Handling \"Save images\" command ---"}));
    Program().CloseMessage(box);
    Program().WaitForMenu("SR.LA");
}

TEST_F(WindowPicturesTest, APictureWhoseNameIsNoFileNameIsReported) {
    WriteProcess("flow.txt",
                 "deposition -name a/b -type oxide -thickness 500 -color 200 100 50 100\n");
    StartWithLayout();
    Program().RunToEnd(Process());
    EXPECT_EQ(Program().Caption(), L"002 a/b deposition");
    Program().Command(saveCommand);
    Program().WaitForLine(L"Errors occurred saving images");
    ASSERT_EQ(FoldersBeside("flow ").size(), 1u);
    const std::wstring folder = FoldersBeside("flow ")[0].wstring();
    EXPECT_EQ(Program().ConsoleLines(),
              (Lines{L"--- Handling \"Save images\" command ---",
                     L"Saving images to folder \"" + folder + L"\". Please wait ...",
                     L"Error while saving image " + folder +
                         L"\\002 002 a/b deposition.bmp to output folder \"" + folder + L"\"",
                     L"Errors occurred saving images"}));
    EXPECT_TRUE(fs::exists(fs::path(folder) / "001 001 Substrate.bmp"));
}

TEST_F(WindowPicturesTest, TheWindowShowsThePictureScaledInTheMiddle) {
    StartWithLayout();
    Program().RunToEnd(Process());
    const fs::path folder = Save();
    const auto last = Bytes(folder / "003 003 Nitride deposition.bmp");
    const auto first = Bytes(folder / "001 001 Substrate.bmp");
    const ShownPicture afterRun = Program().Pixels();
    ASSERT_GT(afterRun.width, 0);
    EXPECT_EQ(CountDifferences(afterRun, last), 0u);
    EXPECT_GT(CountDifferences(afterRun, first), 1000u);
    Program().KeyTo(VK_RIGHT, L"001 Substrate");
    EXPECT_EQ(CountDifferences(Program().Pixels(), first), 0u);
    Program().Ask(ProbeRequest::Repaint, LPARAM{2});
    EXPECT_EQ(CountDifferences(Program().Pixels(), first), 0u);
}

class StepPicturesTest : public WindowPicturesTest {
protected:
    /// Has a second run of the program at the end of its third step, its second picture shown, and
    /// the pictures of the first run at hand, which are the same.
    void HoldThirdStep() {
        StartWithLayout();
        Program().RunToEnd(Process());
        const fs::path folder = Save();
        bitmaps_ = {Bytes(folder / "001 001 Substrate.bmp"),
                    Bytes(folder / "002 002 Oxide deposition.bmp"),
                    Bytes(folder / "003 003 Nitride deposition.bmp")};
        Program().RunAndHold(Process(), 6);
    }

    /// The number of the picture that the window shows, counted in the run; 0 for none of them.
    int Shown() {
        const ShownPicture shown = Program().Pixels();
        for (std::size_t i = 0; i < bitmaps_.size(); ++i) {
            if (shown.width > 0 && CountDifferences(shown, bitmaps_[i]) == 0) {
                return static_cast<int>(i) + 1;
            }
        }
        return 0;
    }

    std::vector<std::vector<std::uint8_t>> bitmaps_;
};

TEST_F(StepPicturesTest, ArrowKeysDuringAStepChangeTheCaptionButNotThePicture) {
    HoldThirdStep();
    EXPECT_EQ(Shown(), 2);
    Program().KeyTo(VK_LEFT, L"004 Substrate");
    EXPECT_EQ(Shown(), 2);
    Program().KeyTo(VK_RIGHT, L"005 Oxide deposition");
    Program().KeyTo(VK_RIGHT, L"004 Substrate");
    EXPECT_EQ(Shown(), 2);
    Program().Release();
    Program().WaitForMenu("SR.LA");
    EXPECT_EQ(Program().Caption(), L"006 Nitride deposition");
    EXPECT_EQ(Shown(), 3);
}

/// Covers a window with one of another program for as long as it lives.
class Cover {
public:
    explicit Cover(HWND covered) {
        RECT place = {};
        GetWindowRect(covered, &place);
        window_ = CreateWindowExW(WS_EX_TOPMOST, L"Edit", L"", WS_POPUP | WS_VISIBLE, place.left,
                                  place.top, place.right - place.left, place.bottom - place.top,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        UpdateWindow(window_);
    }
    ~Cover() { DestroyWindow(window_); }
    Cover(const Cover&) = delete;
    Cover& operator=(const Cover&) = delete;

    bool Covers(POINT point) const { return WindowFromPoint(point) == window_; }

private:
    HWND window_ = nullptr;
};

TEST_F(StepPicturesTest, UncoveringDuringAStepPaintsNothingUntilItsEnd) {
    const auto count = [](const std::vector<std::string>& texts, const std::string& text) {
        return std::count(texts.begin(), texts.end(), text);
    };
    const std::string painting = "Handling RenderWindow WM_PAINT";
    const std::string refused = "RenderWindow WM_PAINT with out GL context";
    HoldThirdStep();
    Program().KeyTo(VK_LEFT, L"004 Substrate");
    DebugOutput output(Program().ProcessId());
    RECT place = {};
    GetWindowRect(Program().Child(renderWindowId), &place);
    {
        const Cover cover(Program().Window());
        WaitFor("the cover", [&] { return cover.Covers({place.left + 50, place.top + 50}); });
    }
    std::vector<std::string> heard;
    WaitFor("a paint of what was covered", [&] {
        const auto more = output.Take();
        heard.insert(heard.end(), more.begin(), more.end());
        return count(heard, painting) > 0;
    });
    Program().Ask(ProbeRequest::Repaint, LPARAM{1});
    EXPECT_EQ(Program().Ask(ProbeRequest::Repaint, LPARAM{1}).number, 0);  // nothing is left over
    Sleep(200);
    const auto more = output.Take();
    heard.insert(heard.end(), more.begin(), more.end());
    EXPECT_GE(count(heard, painting), 3);
    EXPECT_EQ(count(heard, refused), count(heard, painting));
    EXPECT_EQ(Shown(), 2);
    Program().Release();
    Program().WaitForMenu("SR.LA");
    EXPECT_EQ(Shown(), 3);
    Sleep(200);
    heard = output.Take();
    EXPECT_GE(count(heard, painting), 1);
    EXPECT_EQ(count(heard, refused), 0);
}

}  // namespace zelmo
